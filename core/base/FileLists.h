#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// Files as programs hand them to each other, through the clipboard or by dragging: in several
/// formats at once, named by their MIME types. Paths are absolute and of any bytes. Safe on any
/// thread.
namespace fennik::FileLists {

/// What the receiver is to do with the files.
enum class Intent { copy, move };

struct Files {
    std::vector<std::string> paths = {}; ///< without a trailing separator
    Intent intent = Intent::copy;

    friend bool operator==(const Files&, const Files&) = default;
};

struct Format {
    std::string_view type = {};
    std::string content = {};
};
/// The files in all formats that are understood.
std::vector<Format> write(const Files& files);

/// The files in whatever of the formats there are. `contentOf` gives the bytes of a type, empty
/// where there are none. Of what is no file on this machine nothing comes back; plain text counts
/// only where every line is a path.
Files read(const std::function<std::string(std::string_view type)>& contentOf);

} // namespace fennik::FileLists
