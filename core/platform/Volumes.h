#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace fennik {

/// One mounted file system.
struct Volume {
    std::string mountPoint; ///< absolute path bytes
    std::string type;       ///< the system's name for the kind of file system
    bool isRemote = false;  ///< on a network, or behind a program that may not answer
};

namespace Volumes {

/// Everything that is mounted now. Asks the kernel's table, never a disk; empty where the system
/// has no such table.
std::vector<Volume> mounted();

/// The volume in `volumes` on which `path` lies as it is written (links in it are not followed);
/// a plain local volume at "/" when none fits.
Volume containing(std::string_view path, const std::vector<Volume>& volumes);

} // namespace Volumes

} // namespace fennik
