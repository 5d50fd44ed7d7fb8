#include "core/platform/Volumes.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <sstream>
#include <string>

namespace fennik::Volumes {

namespace {

constexpr std::array remoteTypes{
    std::string_view("nfs"),    std::string_view("nfs4"),    std::string_view("cifs"),
    std::string_view("smb3"),   std::string_view("smbfs"),   std::string_view("9p"),
    std::string_view("afs"),    std::string_view("ceph"),    std::string_view("coda"),
    std::string_view("autofs"), std::string_view("virtiofs")};

bool isRemoteType(std::string_view type) {
    // For its table of connections the kernel itself answers.
    const bool isProgram = type.starts_with("fuse") && type != "fusectl";
    return isProgram || std::ranges::find(remoteTypes, type) != remoteTypes.end();
}

bool isOctal(char digit) {
    return digit >= '0' && digit <= '7';
}

/// The table writes blanks, tabs, newlines and backslashes as three octal digits.
std::string unescaped(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto digits = text.substr(i + 1, 3);
        if (text[i] != '\\' || digits.size() != 3 || !std::ranges::all_of(digits, isOctal)) {
            result += text[i];
            continue;
        }
        result +=
            static_cast<char>((digits[0] - '0') * 64 + (digits[1] - '0') * 8 + digits[2] - '0');
        i += 3;
    }
    return result;
}

} // namespace

std::vector<Volume> mounted() {
    std::vector<Volume> volumes;
    std::ifstream table("/proc/self/mountinfo");
    // A line is: id, parent, device, root, mount point, options, optional fields, "-", type,
    // source, …
    for (std::string line; std::getline(table, line);) {
        std::istringstream fields(line);
        std::string skipped;
        std::string device;
        std::string mountPoint;
        std::string type;
        std::string source;
        fields >> skipped >> skipped >> device >> skipped >> mountPoint;
        while (fields >> skipped && skipped != "-") {
        }
        if (fields >> type >> source)
            volumes.push_back(
                {unescaped(mountPoint), type, isRemoteType(type), device, unescaped(source)});
    }
    return volumes;
}

} // namespace fennik::Volumes
