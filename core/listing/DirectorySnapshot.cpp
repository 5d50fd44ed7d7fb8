#include "core/listing/DirectorySnapshot.h"

#include <algorithm>
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

using Rows = std::vector<std::size_t>;

/// How far the walk looks for where two listings agree again. Systems list a folder in the same
/// order as before, so that they do so right behind what has come or gone.
constexpr std::size_t lookAhead = 4;

/// Rows by their names. Names are compared only where their hashes agree.
class RowsByName {
public:
    RowsByName(const FileItems& items, const Rows& rows)
        : items_(items), slots_(std::bit_ceil(rows.size() * 2 + 1)) {
        for (const auto row : rows) {
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

/// Walks through both listings side by side. What finds no partner close by is looked up by its
/// name afterwards.
class Comparison {
public:
    Comparison(const FileItems& before, const FileItems& after) : before_(before), after_(after) {}

    DirectorySnapshot::Difference run() {
        walk();
        const RowsByName left(before_, unmatchedBefore_);
        std::vector<bool> isKept(unmatchedBefore_.empty() ? 0 : before_.size());
        DirectorySnapshot::Difference difference;
        for (const auto row : unmatchedAfter_) {
            const auto name = after_.view(row).name;
            if (const auto old = left.find(name)) {
                isKept[*old] = true;
                match(*old, row);
            } else {
                difference.added.push_back(name);
            }
        }
        for (const auto row : unmatchedBefore_) {
            if (!isKept[row])
                difference.removed.push_back(before_.view(row).name);
        }
        std::ranges::sort(changed_);
        for (const auto row : changed_)
            difference.changed.push_back(after_.view(row).name);
        return difference;
    }

private:
    void walk() {
        std::size_t old = 0;
        std::size_t now = 0;
        while (old < before_.size() && now < after_.size()) {
            const auto oldName = before_.view(old).name;
            const auto name = after_.view(now).name;
            if (oldName == name) {
                match(old++, now++);
            } else if (const auto come = distance(after_, now, oldName)) {
                pass(unmatchedAfter_, now, come);
            } else {
                const auto gone = distance(before_, old, name);
                pass(unmatchedBefore_, old, gone > 0 ? gone : 1);
                if (gone == 0)
                    pass(unmatchedAfter_, now, 1);
            }
        }
        pass(unmatchedBefore_, old, before_.size() - old);
        pass(unmatchedAfter_, now, after_.size() - now);
    }

    /// How many rows behind `row` the name comes; 0 when it is not close.
    static std::size_t distance(const FileItems& items, std::size_t row, std::string_view name) {
        for (std::size_t rows = 1; rows <= lookAhead && row + rows < items.size(); ++rows) {
            if (items.view(row + rows).name == name)
                return rows;
        }
        return 0;
    }

    static void pass(Rows& unmatched, std::size_t& row, std::size_t count) {
        for (; count > 0; --count)
            unmatched.push_back(row++);
    }

    void match(std::size_t old, std::size_t now) {
        if (!showTheSame(before_.view(old), after_.view(now)))
            changed_.push_back(now);
    }

    const FileItems& before_;
    const FileItems& after_;
    Rows unmatchedBefore_;
    Rows unmatchedAfter_;
    Rows changed_; ///< rows of the later listing
};

} // namespace

DirectorySnapshot::Difference DirectorySnapshot::compare(const DirectorySnapshot& before,
                                                         const DirectorySnapshot& after) {
    return Comparison(before.items_, after.items_).run();
}

} // namespace fennik
