#pragma once

#include <string>

namespace fennik::app {

/// The clipboard of the desktop. Main thread only.
class Clipboard {
public:
    virtual ~Clipboard() = default;
    /// What a program put there as text, in UTF-8, or as the URLs of files, one a line; empty
    /// where there is neither.
    virtual std::string text() const = 0;
};

} // namespace fennik::app
