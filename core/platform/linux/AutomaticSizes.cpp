#include "core/platform/Volumes.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>

namespace fennik::Volumes {

namespace {

namespace fs = std::filesystem;

/// File systems without a device that keep files of the user, in memory or on the disks of others
/// that are in use anyway.
constexpr std::array withoutDevice{std::string_view("tmpfs"), std::string_view("ramfs"),
                                   std::string_view("overlay"), std::string_view("rootfs")};

std::string firstWord(const fs::path& file) {
    std::ifstream stream(file);
    std::string word;
    stream >> word;
    return word;
}

bool isNumbered(std::string_view name, std::string_view prefix) {
    return name.starts_with(prefix) && name.size() > prefix.size() && name[prefix.size()] >= '0' &&
           name[prefix.size()] <= '9';
}

/// Whether the device at `place`, or one that it hangs on, can be taken away.
bool isRemovable(fs::path place, const fs::path& tree) {
    for (; place != tree && place.has_relative_path(); place = place.parent_path()) {
        const auto name = place.filename().string();
        const bool isExternalBus = isNumbered(name, "usb") || isNumbered(name, "fw");
        const bool isNetworked = isNumbered(name, "session") || name == "nvme-fabrics";
        if (isExternalBus || isNetworked)
            return true;
        const auto removable = firstWord(place / "removable");
        if (removable == "1" || removable == "removable" || firstWord(place / "type") == "SD")
            return true;
    }
    return false;
}

bool isMemory(std::string_view name) {
    return isNumbered(name, "zram") || isNumbered(name, "ram");
}

/// `place` is the folder of a disk, a partition or a device made of others.
bool isInternal(const fs::path& place, const fs::path& tree) {
    std::error_code error;
    const auto real = fs::canonical(place, error);
    if (error || isRemovable(real, tree))
        return false;
    const fs::directory_iterator parts(real / "slaves", error);
    if (!error && parts != fs::directory_iterator())
        return std::ranges::all_of(parts, [&tree](const fs::directory_entry& part) {
            return isInternal(part.path(), tree);
        });
    const auto relative = real.lexically_relative(tree).string();
    // Disks with several ways to them are virtual as well; images and network disks are not ours.
    return !relative.starts_with("devices/virtual/") ||
           relative.starts_with("devices/virtual/nvme-subsystem/") ||
           isMemory(real.filename().string());
}

/// Where the device of the volume is described; nothing for a volume without one.
std::optional<fs::path> deviceFolder(const Volume& volume, const fs::path& tree) {
    if (!volume.device.empty() && !volume.device.starts_with("0:"))
        return tree / "dev/block" / volume.device;
    // File systems over several disks have a number of their own, and are known by one disk.
    if (!volume.source.starts_with("/dev/"))
        return std::nullopt;
    std::error_code error;
    const auto device = fs::canonical(volume.source, error);
    return tree / "class/block" / (error ? fs::path(volume.source) : device).filename();
}

} // namespace

bool allowsAutomaticSizes(const Volume& volume, const std::string& deviceTree) {
    if (volume.isRemote)
        return false;
    std::error_code error;
    const auto tree = fs::canonical(deviceTree, error);
    if (const auto folder = deviceFolder(volume, tree))
        return !error && isInternal(*folder, tree);
    return std::ranges::find(withoutDevice, volume.type) != withoutDevice.end();
}

} // namespace fennik::Volumes
