#include "core/listing/DirectorySnapshot.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

namespace fennik {

namespace {

bool haveSameTarget(const FileItemView& left, const FileItemView& right) {
    if (left.aliasTarget == nullptr || right.aliasTarget == nullptr)
        return left.aliasTarget == right.aliasTarget;
    return *left.aliasTarget == *right.aliasTarget;
}

bool showTheSame(const FileItemView& left, const FileItemView& right) {
    return left.kind == right.kind && left.size == right.size && left.modified == right.modified &&
           left.mode == right.mode && left.linksToDirectory == right.linksToDirectory &&
           left.isHidden == right.isHidden && haveSameTarget(left, right);
}

struct Range {
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// Rows by their names. Names are compared only where their hashes agree.
class RowsByName {
public:
    RowsByName(const FileItems& items, Range rows)
        : items_(items), slots_(std::bit_ceil((rows.end - rows.begin) * 2 + 1)) {
        for (auto row = rows.begin; row < rows.end; ++row) {
            const auto hash = hashOf(items.view(row).name);
            auto place = hash & mask();
            while (slots_[place].isUsed)
                place = (place + 1) & mask();
            slots_[place] = {static_cast<std::uint32_t>(row), hash, true};
        }
    }

    std::optional<std::size_t> find(std::string_view name) const {
        const auto hash = hashOf(name);
        for (auto place = hash & mask(); slots_[place].isUsed; place = (place + 1) & mask()) {
            const auto& slot = slots_[place];
            if (slot.hash == hash && items_.view(slot.row).name == name)
                return slot.row;
        }
        return std::nullopt;
    }

private:
    struct Slot {
        std::uint32_t row = 0;
        std::uint32_t hash = 0;
        bool isUsed = false;
    };

    static std::uint32_t hashOf(std::string_view name) {
        return static_cast<std::uint32_t>(std::hash<std::string_view>()(name));
    }
    std::size_t mask() const { return slots_.size() - 1; }

    const FileItems& items_;
    std::vector<Slot> slots_;
};

bool haveSameName(const FileItems& before, std::size_t old, const FileItems& after,
                  std::size_t now) {
    return before.view(old).name == after.view(now).name;
}

} // namespace

DirectorySnapshot::Difference DirectorySnapshot::compare(const DirectorySnapshot& before,
                                                         const DirectorySnapshot& after) {
    const auto& earlier = before.items_;
    const auto& later = after.items_;
    // Systems list a folder in the same order again, so that both ends mostly agree.
    Range old{0, earlier.size()};
    Range now{0, later.size()};
    while (old.begin < old.end && now.begin < now.end &&
           haveSameName(earlier, old.begin, later, now.begin)) {
        ++old.begin;
        ++now.begin;
    }
    while (old.begin < old.end && now.begin < now.end &&
           haveSameName(earlier, old.end - 1, later, now.end - 1)) {
        --old.end;
        --now.end;
    }

    Difference difference;
    const auto compareRows = [&](std::size_t oldRow, std::size_t newRow) {
        const auto item = later.view(newRow);
        if (!showTheSame(earlier.view(oldRow), item))
            difference.changed.push_back(item.name);
    };
    for (std::size_t row = 0; row < now.begin; ++row)
        compareRows(row, row);
    const RowsByName rows(earlier, old);
    std::vector<bool> isKept(old.end - old.begin);
    for (auto row = now.begin; row < now.end; ++row) {
        const auto name = later.view(row).name;
        if (const auto oldRow = rows.find(name)) {
            isKept[*oldRow - old.begin] = true;
            compareRows(*oldRow, row);
        } else {
            difference.added.push_back(name);
        }
    }
    for (auto row = old.begin; row < old.end; ++row) {
        if (!isKept[row - old.begin])
            difference.removed.push_back(earlier.view(row).name);
    }
    for (auto row = now.end; row < later.size(); ++row)
        compareRows(old.end + (row - now.end), row);
    return difference;
}

} // namespace fennik
