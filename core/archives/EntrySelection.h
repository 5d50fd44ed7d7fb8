#pragma once

#include "core/archives/ArchiveIndex.h"
#include "core/operations/TransferTotals.h"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace fennik {

/// Which entries of an archive are to be taken.
class EntrySelection {
public:
    /// Paths of entries, each with all below it; none: everything.
    explicit EntrySelection(const std::optional<std::vector<std::string>>& paths);

    /// How much of the path of an entry leads to the folder that holds what was selected, and is
    /// left out in the target. None: the entry is not to be taken.
    std::optional<std::size_t> baseLength(std::string_view path) const;
    /// Paths that were selected, but are none in the archive.
    std::vector<std::string> missingIn(const ArchiveIndex& index) const;
    TransferTotals totals(const ArchiveIndex& index) const;
    /// Selected hard links, by the paths of the entries that they are other names of and that were
    /// not selected; one for each of them.
    std::map<std::string, ArchiveEntry> linksOut(const ArchiveIndex& index) const;

private:
    using Visit = std::function<void(const ArchiveEntry&)>;
    /// All that was selected one by one but folders, each once.
    void visit(const ArchiveIndex& index, const Visit& visit) const;

    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view path) const {
            return std::hash<std::string_view>()(path);
        }
    };
    std::optional<std::unordered_set<std::string, Hash, std::equal_to<>>> selected_ = {};
};

} // namespace fennik
