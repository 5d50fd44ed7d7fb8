#pragma once

#include <cstddef>
#include <ctime>
#include <string>
#include <string_view>
#include <utility>

namespace fennik {

/// What a trash notes of an item: where it lay, and when it was put away in local time. `path` is
/// absolute, or in the trash of a volume relative to its top. Source: the FreeDesktop.org Trash
/// standard 1.0, "Contents of a trash directory".
std::string trashRecord(std::string_view path, const std::tm& deleted);

/// The name of the file that holds the record of what a trash calls `name`.
std::string trashRecordName(std::string_view name);

/// The names an item can have in a trash: its own, and then with numbers.
class TrashNames {
public:
    explicit TrashNames(std::string name) : name_(std::move(name)) {}
    /// So short that the name of its record fits.
    std::string current() const;
    void takeNext();
    /// For a volume that takes less than usual. False where a name cannot get any shorter.
    bool shorten();

private:
    std::string name_;
    std::string number_ = {};
    int next_ = 2;
    std::size_t longest_ = 255; ///< what the volume takes for one name, in bytes
};

} // namespace fennik
