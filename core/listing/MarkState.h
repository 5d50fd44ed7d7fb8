#pragma once

#include "core/listing/FileItems.h"
#include "core/listing/FileMask.h"
#include "core/listing/NameSet.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace fennik {

enum class Marking { mark, unmark };

/// Which items of a panel are marked, by their names, so that marks outlive a new order and a new
/// reading of the folder. The parent entry never is. A value; the operations take the items in the
/// order in which they are shown.
///
/// `toggle` takes constant time and `markRange` the time of its range, however many items there are
/// and however many of them are marked; all other operations are linear in the number of items.
class MarkState {
public:
    /// The names of the marked items.
    const NameSet& marked() const { return marked_; }
    bool isMarked(std::string_view name) const { return marked_.contains(name); }
    /// The row at which the last operation on a range began; none after other operations.
    std::optional<std::ptrdiff_t> anchor() const { return anchor_; }
    /// The marks as the last operation on a range, on all items or on none left them. Made anew at
    /// each call.
    NameSet base() const;

    /// From row `from`, which becomes the anchor, to row `to`, both included and either way round.
    /// Rows that do not exist are passed over. Gives the rows whose mark is another one now.
    std::vector<std::size_t> markRange(const FileItems& items, std::ptrdiff_t from,
                                       std::ptrdiff_t to, Marking marking);
    void markAll(const FileItems& items);
    void invert(const FileItems& items);
    void unmarkAll();
    void toggle(std::string_view name);
    void markByMask(const FileItems& items, const FileMask& mask, Marking marking);
    /// Forgets names that are not among `items`, and an anchor behind their end.
    void prune(const FileItems& items);

    /// The rows that an operation applies to: those of the marked items, or the one of the cursor
    /// when no name is marked. None for a cursor that stands on the parent entry or on no row.
    std::vector<std::size_t> targets(const FileItems& items, std::size_t cursor) const;

    friend bool operator==(const MarkState&, const MarkState&) = default;

private:
    /// Marks or unmarks a name without touching the base; false when that changes nothing.
    bool set(std::string_view name, Marking marking);
    /// Makes the marks of this moment the base.
    void settle(std::optional<std::ptrdiff_t> anchor);

    NameSet marked_;
    NameSet changed_; ///< the names that are in one of marks and base only
    std::optional<std::ptrdiff_t> anchor_;
};

} // namespace fennik
