#include "core/platform/linux/TrashRecord.h"

#include "core/base/NumberedName.h"
#include "core/base/PathText.h"

#include <algorithm>
#include <array>

namespace fennik {

namespace {

constexpr std::string_view suffix = ".trashinfo";
/// No volume takes less for one name, in bytes.
constexpr std::size_t leastLongestName = 64;

} // namespace

std::string trashRecord(std::string_view path, const std::tm& deleted) {
    std::array<char, 64> date{};
    const auto length = std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &deleted);
    return "[Trash Info]\nPath=" + percentEncoded(path) +
           "\nDeletionDate=" + std::string(date.data(), length) + "\n";
}

std::string trashRecordName(std::string_view name) {
    return std::string(name).append(suffix);
}

std::string TrashNames::current() const {
    return numberedName(name_, number_, longest_ - suffix.size());
}

void TrashNames::takeNext() {
    number_ = " " + std::to_string(next_++);
}

bool TrashNames::shorten() {
    if (longest_ <= leastLongestName)
        return false;
    longest_ = std::max(longest_ / 2, leastLongestName);
    return true;
}

} // namespace fennik
