#pragma once

#include "core/base/FileUrl.h"

#include <string>
#include <vector>

namespace fennik::app {

/// The clipboard of the desktop. Main thread only.
class Clipboard {
public:
    virtual ~Clipboard() = default;
    /// What a program put there as text, in UTF-8, or as the URLs of files, one a line; empty
    /// where there is neither.
    virtual std::string text() const = 0;
    virtual void setText(const std::string& text) = 0;

    struct Files {
        std::vector<std::string> paths = {}; ///< absolute, in bytes
        bool isCut = false;                  ///< whoever put them there wants them moved
    };
    /// The files that a program put there; none where there are none.
    virtual Files files() const = 0;
    /// Puts files there, to be copied; also as their plain paths.
    virtual void setFiles(const std::vector<FileUrl>& files) = 0;
};

} // namespace fennik::app
