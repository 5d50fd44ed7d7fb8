#pragma once

#include <cerrno>
#include <string>

namespace fennik {

/// Why a call of the operating system failed: an `errno` value. For code, not for the user: the
/// module that made the call says in a sentence what was tried on which item.
struct PosixError {
    int code = 0;

    /// The system's own text for the code, in the language of LC_MESSAGES. Never empty; unknown
    /// codes give the system's text for unknown codes. Safe on any thread.
    std::string reason() const;
    /// This process, or the system, has as many files open as it may.
    bool isForLackOfDescriptors() const { return code == EMFILE || code == ENFILE; }

    friend bool operator==(const PosixError&, const PosixError&) = default;
};

} // namespace fennik
