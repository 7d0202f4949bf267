#pragma once
// A fresh folder per test, removed afterwards, with helpers to build trees in it.
#include <cstdint>
#include <string>
#include <string_view>

class TempTree {
public:
    TempTree();
    ~TempTree();
    TempTree(const TempTree&) = delete;
    TempTree& operator=(const TempTree&) = delete;

    [[nodiscard]] const std::string& root() const { return base; }
    [[nodiscard]] std::string path(std::string_view relative) const;

    // Creates the folder and its parents; returns its absolute path.
    std::string dir(std::string_view relative) const;
    // Writes `size` bytes of real data (not a sparse file), making the folders; returns the path.
    std::string file(std::string_view relative, int64_t size = 0) const;
    std::string text(std::string_view relative, std::string_view content) const;
    // A file of `size` bytes of real blocks, reserved rather than written (fast for big ones).
    std::string reserved(std::string_view relative, int64_t size) const;
    std::string hardLink(std::string_view existing, std::string_view link) const;
    std::string symLink(std::string_view target, std::string_view link) const;
    // Sets the modification (and access) time to `secondsAgo` before now.
    void age(std::string_view relative, double secondsAgo) const;
    // Sets the modification and access time to `seconds` since 1970, without following a link.
    // False when the file system cannot hold that date (ext4 stops in 2446).
    bool dateAt(std::string_view relative, int64_t seconds) const;

private:
    std::string base;
};

// Bytes that a file of `size` bytes occupies on this file system, as st_blocks*512 would say.
int64_t allocatedSize(const std::string& path);
