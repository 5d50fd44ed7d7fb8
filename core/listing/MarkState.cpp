#include "core/listing/MarkState.h"

#include <algorithm>
#include <string>
#include <utility>

namespace fennik {

namespace {

/// Moves the names that occur in `items` out of `names`, without making them again.
NameSet takeListed(NameSet& names, const FileItems& items) {
    NameSet listed;
    for (std::size_t row = 0; row < items.size() && !names.empty(); ++row) {
        const auto found = names.find(items.view(row).name);
        if (found != names.end())
            listed.insert(names.extract(found));
    }
    return listed;
}

void flip(NameSet& names, std::string_view name) {
    const auto found = names.find(name);
    if (found != names.end())
        names.erase(found);
    else
        names.emplace(name);
}

} // namespace

NameSet MarkState::base() const {
    auto result = marked_;
    for (const auto& name : changed_)
        flip(result, name);
    return result;
}

std::vector<std::size_t> MarkState::markRange(const FileItems& items, std::ptrdiff_t from,
                                              std::ptrdiff_t to, Marking marking) {
    const auto last = std::ssize(items) - 1;
    to = std::clamp(to, std::ptrdiff_t{0}, std::max(last, std::ptrdiff_t{0}));
    std::vector<std::size_t> rows;
    for (auto i = std::max(std::min(from, to), std::ptrdiff_t{0});
         i <= std::min(std::max(from, to), last); ++i) {
        const auto row = static_cast<std::size_t>(i);
        const auto item = items.view(row);
        if (!item.isParentLink && set(item.name, marking))
            rows.push_back(row);
    }
    settle(from);
    return rows;
}

void MarkState::markAll(const FileItems& items) {
    marked_.clear();
    invert(items);
}

void MarkState::invert(const FileItems& items) {
    NameSet result;
    result.reserve(items.size() - std::min(items.size(), marked_.size()));
    for (std::size_t row = 0; row < items.size(); ++row) {
        const auto item = items.view(row);
        if (!item.isParentLink && !isMarked(item.name))
            result.emplace(item.name);
    }
    marked_ = std::move(result);
    settle(std::nullopt);
}

void MarkState::unmarkAll() {
    *this = {};
}

void MarkState::toggle(std::string_view name) {
    if (name != "..")
        set(name, isMarked(name) ? Marking::unmark : Marking::mark);
}

void MarkState::markByMask(const FileItems& items, const FileMask& mask, Marking marking) {
    for (std::size_t row = 0; row < items.size(); ++row) {
        const auto item = items.view(row);
        if (mask.matches(item))
            set(item.name, marking);
    }
}

void MarkState::prune(const FileItems& items) {
    marked_ = takeListed(marked_, items);
    changed_ = takeListed(changed_, items);
    if (anchor_ && *anchor_ >= std::ssize(items))
        anchor_.reset();
}

std::vector<std::size_t> MarkState::targets(const FileItems& items, std::size_t cursor) const {
    std::vector<std::size_t> rows;
    if (marked_.empty()) {
        if (cursor < items.size() && !items.view(cursor).isParentLink)
            rows.push_back(cursor);
        return rows;
    }
    for (std::size_t row = 0; row < items.size() && rows.size() < marked_.size(); ++row) {
        if (isMarked(items.view(row).name))
            rows.push_back(row);
    }
    return rows;
}

bool MarkState::set(std::string_view name, Marking marking) {
    if (isMarked(name) == (marking == Marking::mark))
        return false;
    flip(marked_, name);
    flip(changed_, name);
    return true;
}

void MarkState::settle(std::optional<std::ptrdiff_t> anchor) {
    changed_ = {}; // Clearing would go through all the room that it once needed, at each key press.
    anchor_ = anchor;
}

} // namespace fennik
