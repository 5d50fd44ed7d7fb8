#pragma once

#include "core/listing/FileItems.h"

#include <string_view>
#include <utility>
#include <vector>

namespace fennik {

/// A listing frozen as it was read, to be compared with a later one of the same folder. Costs
/// nothing beside the items, which it shares. Immutable, and so safe to read on any thread.
class DirectorySnapshot {
public:
    /// Names from the snapshots, and valid as long as they are.
    struct Difference {
        std::vector<std::string_view> added;   ///< in the order of the later listing
        std::vector<std::string_view> removed; ///< in the order of the earlier listing
        std::vector<std::string_view> changed; ///< in the order of the later listing

        bool isEmpty() const { return added.empty() && removed.empty() && changed.empty(); }
    };

    DirectorySnapshot() = default;
    explicit DirectorySnapshot(FileItems items) : items_(std::move(items)) {}

    const FileItems& items() const { return items_; }

    /// An item is the same as long as its name is, and has changed when its kind, size, date, mode
    /// or anything else that a row shows has. The order of the items does not matter, but is best
    /// alike in both. Linear in the number of items.
    static Difference compare(const DirectorySnapshot& before, const DirectorySnapshot& after);

private:
    FileItems items_;
};

} // namespace fennik
