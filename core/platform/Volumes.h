#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace fennik {

/// One mounted file system.
struct Volume {
    std::string mountPoint;  ///< absolute path bytes
    std::string type;        ///< the system's name for the kind of file system
    bool isRemote = false;   ///< on a network, or behind a program that may not answer
    std::string device = {}; ///< the system's number of the device, "major:minor"; may be unknown
    std::string source = {}; ///< what is mounted: the path of a device, or any other name
};

namespace Volumes {

/// Tells what is mounted, as `mounted` does; on any thread.
using Source = std::function<std::vector<Volume>()>;

/// Everything that is mounted now. Asks the kernel's table, never a disk; empty where the system
/// has no such table.
std::vector<Volume> mounted();

/// The volume in `volumes` on which `path` lies as it is written (links in it are not followed);
/// a plain local volume at "/" when none fits.
Volume containing(std::string_view path, const std::vector<Volume>& volumes);

/// Whether sizes of folders may be computed there without being asked for: on disks that are local,
/// built in and not removable, looking through partitions, logical volumes and encryption, and in
/// memory. What cannot be told counts as a no, and so do the kernel's own file systems. Asks the
/// kernel and never a disk. `deviceTree` is where the system describes its devices.
bool allowsAutomaticSizes(const Volume& volume, const std::string& deviceTree = "/sys");

/// The mount points of all volumes where they may not: what a computation that nobody asked for
/// does not enter on its way.
std::unordered_set<std::string> withoutAutomaticSizes(const std::vector<Volume>& volumes,
                                                      const std::string& deviceTree = "/sys");

} // namespace Volumes

} // namespace fennik
