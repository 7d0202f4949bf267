#include "storage/StorageStore.h"

#include "foundation/AtomicFile.h"
#include "foundation/FS.h"
#include "foundation/JsonRead.h"
#include "foundation/Support.h"
#include "foundation/Rendering.h"

#include <nlohmann/json.hpp>

#include <stdexcept>

using nlohmann::json;

namespace StorageStore {

namespace {

using namespace JsonRead;

StorageKind storageKind(const json& v) {
    auto k = StorageKinds::fromRaw(text(v));
    if (!k) throw Invalid();
    return *k;
}

FileKind fileKind(const json& v) {
    auto k = FileKinds::fromRaw(text(v));
    if (!k) throw Invalid();
    return *k;
}

json encodeItem(const StorageItem& i) {
    json j{{"name", i.name}, {"path", i.path}, {"bytes", i.bytes}, {"isFolder", i.isFolder}};
    if (i.detail) j["detail"] = *i.detail;
    if (i.reveal) j["reveal"] = *i.reveal;
    return j;
}

StorageItem decodeItem(const json& j) {
    if (!j.is_object()) throw Invalid();
    StorageItem i;
    i.name = text(need(j, "name"));
    i.path = text(need(j, "path"));
    i.bytes = integer(need(j, "bytes"));
    i.isFolder = boolean(need(j, "isFolder"));
    if (auto v = maybe(j, "detail")) i.detail = text(*v);
    if (auto v = maybe(j, "reveal")) i.reveal = text(*v);
    return i;
}

json encodeCategory(const StorageCategory& c) {
    json items = json::array();
    for (const auto& i : c.items) items.push_back(encodeItem(i));
    json j{{"kind", StorageKinds::raw(c.kind)}, {"bytes", c.bytes}, {"items", items}, {"unreadable", c.unreadable}};
    if (!c.unreadableFolders.empty()) j["unreadableFolders"] = c.unreadableFolders;
    return j;
}

StorageCategory decodeCategory(const json& j) {
    if (!j.is_object()) throw Invalid();
    StorageCategory c;
    c.kind = storageKind(need(j, "kind"));
    c.bytes = integer(need(j, "bytes"));
    for (const auto& i : array(need(j, "items"))) c.items.push_back(decodeItem(i));
    c.unreadable = count(need(j, "unreadable"));
    // Files written before the folders were named have counts only.
    if (auto v = maybe(j, "unreadableFolders"))
        for (const auto& f : array(*v)) c.unreadableFolders.push_back(text(f));
    return c;
}

json encodeBig(const BigFile& f) {
    json j{{"name", f.name},
           {"path", f.path},
           {"bytes", f.bytes},
           {"kind", FileKinds::raw(f.kind)},
           {"category", StorageKinds::raw(f.category)}};
    if (f.modified) j["modified"] = secondsSince1970(*f.modified);
    if (f.opened) j["opened"] = secondsSince1970(*f.opened);
    return j;
}

BigFile decodeBig(const json& j) {
    if (!j.is_object()) throw Invalid();
    BigFile f;
    f.name = text(need(j, "name"));
    f.path = text(need(j, "path"));
    f.bytes = integer(need(j, "bytes"));
    f.kind = fileKind(need(j, "kind"));
    f.category = storageKind(need(j, "category"));
    if (auto v = maybe(j, "modified")) f.modified = date(*v);
    if (auto v = maybe(j, "opened")) f.opened = date(*v);
    return f;
}

json encodeApp(const AppSize& a) {
    json j{{"name", a.name}, {"path", a.path}, {"appBytes", a.appBytes}, {"dataBytes", a.dataBytes}};
    if (a.bundleID) j["bundleID"] = *a.bundleID;
    if (a.lastUsed) j["lastUsed"] = secondsSince1970(*a.lastUsed);
    return j;
}

AppSize decodeApp(const json& j) {
    if (!j.is_object()) throw Invalid();
    AppSize a;
    a.name = text(need(j, "name"));
    a.path = text(need(j, "path"));
    if (auto v = maybe(j, "bundleID")) a.bundleID = text(*v);
    a.appBytes = integer(need(j, "appBytes"));
    a.dataBytes = integer(need(j, "dataBytes"));
    if (auto v = maybe(j, "lastUsed")) a.lastUsed = date(*v);
    return a;
}

} // namespace

std::string url(const std::string& folder) { return folder + "/storage.json"; }
std::string url() { return url(Support::dir()); }

std::string encode(const StorageReport& r) {
    json categories = json::array(), biggest = json::array(), apps = json::array();
    for (const auto& c : r.categories) categories.push_back(encodeCategory(c));
    for (const auto& f : r.biggest) biggest.push_back(encodeBig(f));
    for (const auto& a : r.apps) apps.push_back(encodeApp(a));
    json j{{"made", secondsSince1970(r.made)},
           {"seconds", r.seconds},
           {"diskTotal", r.diskTotal},
           {"diskUsed", r.diskUsed},
           {"categories", categories},
           {"biggest", biggest},
           {"apps", apps},
           {"files", r.files},
           {"complete", r.complete}};
    if (r.vm) j["vm"] = *r.vm;
    if (r.diskReserved > 0) j["diskReserved"] = r.diskReserved;
    // Names from the file system may hold invalid UTF-8; the file gets U+FFFD in their place.
    return j.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::optional<StorageReport> decode(const std::string& content) {
    json j = json::parse(content, nullptr, false);
    if (j.is_discarded() || !j.is_object()) return std::nullopt;
    try {
        StorageReport r;
        // The one date the report cannot do without: a bad one fails the file, as a missing
        // one does. The others are left absent.
        auto made = date(need(j, "made"));
        if (!made) throw Invalid();
        r.made = *made;
        r.seconds = number(need(j, "seconds"));
        r.diskTotal = integer(need(j, "diskTotal"));
        r.diskUsed = integer(need(j, "diskUsed"));
        for (const auto& c : array(need(j, "categories"))) r.categories.push_back(decodeCategory(c));
        for (const auto& f : array(need(j, "biggest"))) r.biggest.push_back(decodeBig(f));
        for (const auto& a : array(need(j, "apps"))) r.apps.push_back(decodeApp(a));
        r.files = count(need(j, "files"));
        r.complete = boolean(need(j, "complete"));
        if (auto v = maybe(j, "vm")) r.vm = integer(*v);
        if (auto v = maybe(j, "diskReserved")) r.diskReserved = integer(*v);
        return r;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::optional<StorageReport> load(const std::string& folder) {
    auto content = FS::readText(url(folder), 64 << 20);
    if (!content) return std::nullopt;
    return decode(*content);
}

std::optional<StorageReport> load() { return load(Support::dir()); }

void save(const StorageReport& report, const std::string& folder) {
    if (Tools::rendering) return;
    (void)AtomicFile::write(url(folder), encode(report));
}

void save(const StorageReport& report) { save(report, Support::dir()); }

} // namespace StorageStore
