#pragma once

#include <map>
#include <string>

namespace fennik::test {

/// Everything below `folder`: paths relative to it, and for each the content of a file, "folder/",
/// "-> target" of a link, or "special" for anything else.
std::map<std::string, std::string> diskTree(const std::string& folder);

} // namespace fennik::test
