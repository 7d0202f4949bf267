#pragma once
// A full account of a folder tree, to tell byte for byte whether anything in it changed: every
// entry below the root, sorted, with its kind, mode, size, link target and a hash of its content.
#include <string>

[[nodiscard]] std::string treeListing(const std::string& root);

// A canary tree of folders, files of several sizes, a hard link and a link, made below `root`.
void plantCanary(const std::string& root);
