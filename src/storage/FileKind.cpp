#include "storage/FileKind.h"

#include "foundation/FS.h"

#include <algorithm>
#include <initializer_list>

namespace FileKinds {

namespace {

struct Row {
    FileKind kind;
    std::string_view raw;
    std::string_view title;
    std::string_view symbol;
};

constexpr std::array<Row, 9> rows{{
    {FileKind::video, "video", "Videos", "film"},
    {FileKind::image, "image", "Images", "photo"},
    {FileKind::audio, "audio", "Audio", "waveform"},
    {FileKind::diskImage, "diskImage", "Disk images", "externaldrive"},
    {FileKind::archive, "archive", "Archives", "doc.zipper"},
    {FileKind::installer, "installer", "Installers", "shippingbox"},
    {FileKind::document, "document", "Documents", "doc.richtext"},
    {FileKind::app, "app", "Apps", "app.dashed"},
    {FileKind::other, "other", "Other", "doc"},
}};

struct Extensions {
    FileKind kind;
    std::initializer_list<std::string_view> names;
};

const std::array<Extensions, 8> byKind{{
    {FileKind::video, {"mp4", "mov", "m4v", "mkv", "avi", "webm", "mts", "m2ts", "wmv", "flv", "prores",
                       "fcpbundle", "imovielibrary", "tvlibrary"}},
    {FileKind::image, {"jpg", "jpeg", "png", "heic", "heif", "tif", "tiff", "gif", "psd", "raw", "cr2", "cr3",
                       "nef", "arw", "dng", "webp", "photoslibrary", "photolibrary", "sketch", "fig", "afphoto"}},
    {FileKind::audio, {"mp3", "wav", "aif", "aiff", "flac", "m4a", "aac", "ogg", "logicx", "band", "musiclibrary"}},
    {FileKind::diskImage, {"dmg", "iso", "img", "sparseimage", "sparsebundle", "vmdk", "qcow2", "vdi", "raw-disk",
                           "pvm", "utm", "vmwarevm", "ipsw"}},
    // A downloaded toolchain ("node-v20.tar.xz", "go1.22.tar.gz") is read by its last extension.
    {FileKind::archive, {"zip", "rar", "7z", "tar", "gz", "tgz", "xz", "txz", "bz2", "tbz2", "zst", "xip"}},
    // Linux packages and self-installing images beside the other systems' installers.
    {FileKind::installer, {"pkg", "mpkg", "exe", "msi", "apk", "ipa", "xcarchive", "deb", "rpm", "appimage",
                           "flatpak", "flatpakref", "snap", "run"}},
    {FileKind::document, {"pdf", "key", "pages", "numbers", "doc", "docx", "ppt", "pptx", "xls", "xlsx", "csv",
                          "epub"}},
    {FileKind::app, {"app"}},
}};

constexpr std::array<std::string_view, 14> packages{
    "photoslibrary", "photolibrary", "fcpbundle", "imovielibrary", "tvlibrary", "musiclibrary", "logicx",
    "band", "sparsebundle", "pvm", "utm", "vmwarevm", "app", "xcarchive"};

constexpr std::array<std::string_view, 8> libraries{
    "photoslibrary", "photolibrary", "musiclibrary", "tvlibrary", "imovielibrary", "fcpbundle", "logicx", "band"};

const Row& row(FileKind kind) { return rows[static_cast<std::size_t>(kind)]; }

} // namespace

std::string_view raw(FileKind kind) { return row(kind).raw; }

std::optional<FileKind> fromRaw(std::string_view value) {
    for (const Row& r : rows)
        if (r.raw == value) return r.kind;
    return std::nullopt;
}

std::string_view title(FileKind kind) { return row(kind).title; }
std::string_view symbol(FileKind kind) { return row(kind).symbol; }

std::optional<FileKind> byExtension(std::string_view ext) {
    for (const Extensions& e : byKind)
        if (std::find(e.names.begin(), e.names.end(), ext) != e.names.end()) return e.kind;
    return std::nullopt;
}

FileKind of(std::string_view path) { return byExtension(FS::extension(path)).value_or(FileKind::other); }

std::string downloadWord(std::string_view path, bool isFolder) {
    std::optional<FileKind> kind = byExtension(FS::extension(path));
    switch (kind.value_or(FileKind::other)) {
    case FileKind::installer: return "Installer";
    // A disk image in the downloads is what a system or an app is installed from; a folder
    // that is a disk (a virtual machine) is not.
    case FileKind::diskImage:
        if (!isFolder) return "Installer";
        break;
    case FileKind::archive: return "Archive";
    case FileKind::video: return "Video";
    case FileKind::app: return "App";
    default: break;
    }
    return isFolder ? "Folder" : "File";
}

bool isPackage(std::string_view ext) {
    return !ext.empty() && std::find(packages.begin(), packages.end(), ext) != packages.end();
}

bool isLibrary(std::string_view ext) {
    return !ext.empty() && std::find(libraries.begin(), libraries.end(), ext) != libraries.end();
}

bool trashable(const std::string& path, const std::string& home,
               const std::function<bool(const std::string&)>& isSafe) {
    if (home.empty() || !path.starts_with(home + "/")) return false;
    if (!isSafe || !isSafe(path)) return false;
    return !isLibrary(FS::extension(path));
}

} // namespace FileKinds
