#pragma once

#include <map>
#include <string>

namespace fennik::test {

/// Everything below `folder`: paths relative to it, and for each the content of a file, "folder/",
/// "-> target" of a link, or "special" for anything else.
std::map<std::string, std::string> diskTree(const std::string& folder);

/// The bytes of a file; none where it cannot be read.
std::string contentOf(const std::string& path);

} // namespace fennik::test
