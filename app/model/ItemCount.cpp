#include "app/model/ItemCount.h"

#include "core/base/CzechText.h"
#include "core/listing/Format.h"

namespace fennik::app {

std::string itemCount(std::int64_t count) {
    const auto noun = pluralForm(count, {"položka", "položky", "položek"});
    return Format::grouped(count) + " " + std::string(noun);
}

std::string itemsInShort(const std::vector<FileUrl>& items) {
    return items.size() == 1 ? quoted(items.front().lastComponent()) : itemCount(std::ssize(items));
}

} // namespace fennik::app
