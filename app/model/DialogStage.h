#pragma once

#include "app/model/Dialog.h"

#include <deque>
#include <memory>
#include <optional>

namespace fennik::app {

/// The one dialog on show, and those that wait for it: nothing takes the place of a question that a
/// worker waits for, and what such a question has taken the place of comes back after it, with what
/// was typed. Main thread only.
class DialogStage {
public:
    /// Tells one dialog from all others.
    using Id = int;

    const std::optional<Dialog>& shown() const { return shown_; }
    /// Of the dialog on show; 0 for none.
    Id shownId() const { return shown_ ? shownId_ : 0; }
    /// The dialog on show, if it is of that type.
    template <class T>
    T* shownAs() {
        return shown_ ? std::get_if<T>(&*shown_) : nullptr;
    }
    bool isOpen(Id id) const;

    /// Shows the dialog in place of another one, or after the question of a worker.
    void open(Dialog dialog);
    /// Shows the question of a worker.
    void openQuestion(Dialog question);
    /// Closes the dialog, on show or not, and shows what waits.
    void close(Id id);

private:
    struct Waiting {
        Id id = 0;
        Dialog dialog = {};
    };
    void show(Dialog dialog);

    std::optional<Dialog> shown_;
    Id shownId_ = 0;
    Id lastId_ = 0;
    std::deque<Waiting> waiting_; ///< the next one first
};

} // namespace fennik::app
