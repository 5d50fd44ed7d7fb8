#include "tests/support/DiskTree.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace fennik::test {

namespace {

namespace fs = std::filesystem;

std::string described(const fs::directory_entry& entry) {
    if (entry.is_symlink())
        return "-> " + fs::read_symlink(entry).string();
    if (entry.is_directory())
        return "folder/";
    if (!entry.is_regular_file())
        return "special";
    return contentOf(entry.path());
}

} // namespace

std::string contentOf(const std::string& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

std::map<std::string, std::string> diskTree(const std::string& folder) {
    std::map<std::string, std::string> tree;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        tree[entry.path().lexically_relative(folder)] = described(entry);
    return tree;
}

} // namespace fennik::test
