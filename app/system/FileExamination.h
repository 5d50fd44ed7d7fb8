#pragma once

#include "core/base/FileUrl.h"

#include <expected>
#include <string>
#include <vector>

namespace fennik::system {

/// Finds out of what type a file is, by its name and its first bytes. Waits for the disk; used on
/// workers. Otherwise a whole sentence says why it cannot be opened: it is not there, cannot be
/// read, or is no plain file.
class FileExamination {
public:
    static std::expected<FileExamination, std::string> of(const FileUrl& file);

    /// The MIME types, from the most special one to the most general that still says something.
    const std::vector<std::string>& types() const { return types_; }

    enum class Runs { no, asProgram, asScript };
    /// What the file would be if somebody ran it. An application that the desktop has for such
    /// files may be one that does.
    Runs runs() const { return runs_; }

private:
    std::vector<std::string> types_;
    Runs runs_ = Runs::no;
};

} // namespace fennik::system
