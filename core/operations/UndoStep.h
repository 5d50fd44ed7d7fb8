#pragma once

#include "core/operations/UrlList.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <variant>
#include <vector>

namespace fennik {

namespace UndoSteps {

struct Moved {
    FileUrl from = {};
    FileUrl to = {};
    friend bool operator==(const Moved&, const Moved&) = default;
};
struct Created {
    FileUrl url = {};
    friend bool operator==(const Created&, const Created&) = default;
};
struct Trashed {
    FileUrl original = {};
    FileUrl inTrash = {};
    friend bool operator==(const Trashed&, const Trashed&) = default;
};
struct RemovedEmptyDirectory {
    FileUrl url = {};
    friend bool operator==(const RemovedEmptyDirectory&, const RemovedEmptyDirectory&) = default;
};

} // namespace UndoSteps

/// One change of the disk that can be taken back.
using UndoStep = std::variant<UndoSteps::Moved, UndoSteps::Created, UndoSteps::Trashed,
                              UndoSteps::RemovedEmptyDirectory>;

/// The steps of one job or action in the order in which they happened, in little memory.
class UndoStepList {
public:
    UndoStepList() = default;
    UndoStepList(std::initializer_list<UndoStep> steps);
    UndoStepList(const std::vector<UndoStep>& steps);

    std::size_t size() const { return kinds_.size(); }
    bool empty() const { return kinds_.empty(); }
    void push_back(const UndoStep& step);
    /// The list must not be empty.
    void pop_back();
    std::vector<UndoStep> all() const;
    /// Gives back the memory that was meant for more.
    void shrink_to_fit();

private:
    enum class Kind : std::uint8_t { moved, created, trashed, removedEmptyDirectory };

    std::vector<Kind> kinds_;
    UrlList urls_;   ///< where the item was, or the only one
    UrlList places_; ///< where it came to, of the steps that tell
};

} // namespace fennik
