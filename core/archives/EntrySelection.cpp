#include "core/archives/EntrySelection.h"

#include "core/operations/ClampedSum.h"

#include <algorithm>
#include <utility>

namespace fennik {

namespace {

/// Of an entry with all below it.
TransferTotals totalsOf(const ArchiveIndex& index, const std::string& top) {
    TransferTotals total;
    std::vector<std::string> left{top};
    while (!left.empty()) {
        const auto path = std::move(left.back());
        left.pop_back();
        const auto entry = index.find(path);
        if (!entry)
            continue;
        if (entry->kind != ArchiveEntry::Kind::directory) {
            ++total.files;
            addClamped(total.bytes, entry->size);
            continue;
        }
        for (const auto name : index.children(path))
            left.push_back(path + "/" + std::string(name));
    }
    return total;
}

} // namespace

EntrySelection::EntrySelection(const std::optional<std::vector<std::string>>& paths) {
    if (paths)
        selected_.emplace(paths->begin(), paths->end());
}

std::optional<std::size_t> EntrySelection::baseLength(std::string_view path) const {
    if (!selected_)
        return 0;
    for (std::size_t base = 0;;) {
        const auto end = path.find('/', base);
        if (selected_->contains(path.substr(0, end)))
            return base;
        if (end == std::string_view::npos)
            return std::nullopt;
        base = end + 1;
    }
}

std::vector<std::string> EntrySelection::missingIn(const ArchiveIndex& index) const {
    std::vector<std::string> missing;
    if (!selected_)
        return missing;
    for (const auto& path : *selected_)
        if (!index.find(path))
            missing.push_back(path);
    std::ranges::sort(missing);
    return missing;
}

TransferTotals EntrySelection::totals(const ArchiveIndex& index) const {
    if (!selected_)
        return {.bytes = index.totalSize(), .files = index.fileCount()};
    TransferTotals total;
    for (const auto& path : *selected_) {
        const auto slash = path.rfind('/');
        const bool isBelowAnother =
            slash != std::string::npos && baseLength(std::string_view(path).substr(0, slash));
        if (isBelowAnother)
            continue;
        const auto its = totalsOf(index, path);
        addClamped(total.bytes, its.bytes);
        total.files += its.files;
    }
    return total;
}

} // namespace fennik
