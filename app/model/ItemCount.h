#pragma once

#include "core/base/FileUrl.h"

#include <cstdint>
#include <string>
#include <vector>

namespace fennik::app {

/// "1 položka", "4 položky", "1 204 položek".
std::string itemCount(std::int64_t count);

/// What an action works on, in the accusative: "„x“" for a single item, else "4 položky".
std::string itemsInShort(const std::vector<FileUrl>& items);

} // namespace fennik::app
