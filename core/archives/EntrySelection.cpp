#include "core/archives/EntrySelection.h"

#include "core/operations/ClampedSum.h"

#include <algorithm>
#include <utility>

namespace fennik {

EntrySelection::EntrySelection(const std::optional<std::vector<std::string>>& paths) {
    if (paths)
        selected_.emplace(paths->begin(), paths->end());
}

std::optional<std::size_t> EntrySelection::baseLength(std::string_view path) const {
    if (!selected_)
        return 0;
    if (selected_->empty())
        return std::nullopt;
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
    visit(index, [&total](const ArchiveEntry& entry) {
        if (entry.kind != ArchiveEntry::Kind::file)
            return;
        ++total.files;
        addClamped(total.bytes, entry.size);
    });
    return total;
}

std::map<std::string, ArchiveEntry> EntrySelection::linksOut(const ArchiveIndex& index) const {
    std::map<std::string, ArchiveEntry> links;
    visit(index, [&](const ArchiveEntry& entry) {
        if (entry.kind == ArchiveEntry::Kind::hardlink && entry.linkTarget &&
            !baseLength(*entry.linkTarget))
            links.emplace(*entry.linkTarget, entry);
    });
    return links;
}

void EntrySelection::visit(const ArchiveIndex& index, const Visit& visit) const {
    std::vector<std::string> left;
    if (!selected_)
        return;
    for (const auto& path : *selected_) {
        const auto slash = path.rfind('/');
        const bool isBelowAnother =
            slash != std::string::npos && baseLength(std::string_view(path).substr(0, slash));
        if (!isBelowAnother)
            left.push_back(path);
    }
    while (!left.empty()) {
        const auto path = std::move(left.back());
        left.pop_back();
        const auto entry = index.find(path);
        if (entry && entry->kind != ArchiveEntry::Kind::directory)
            visit(*entry);
        for (const auto name : index.children(path))
            left.push_back(path + "/" + std::string(name));
    }
}

} // namespace fennik
