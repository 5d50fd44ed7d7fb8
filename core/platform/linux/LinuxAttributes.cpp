#include "core/platform/posix/ItemMetadata.h"
#include "core/platform/posix/PosixCalls.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <sys/xattr.h>
#include <utility>
#include <vector>

namespace fennik {

namespace {

using Result = FileSystem::Result<void>;

constexpr const char* accessList = "system.posix_acl_access";
constexpr const char* inheritedList = "system.posix_acl_default";

/// The calls for an open item, and those for a name of which a link is not followed.
class Attributes {
public:
    explicit Attributes(const ItemPlace& place)
        : descriptor_(place.descriptor),
          path_(place.isOpen()
                    ? std::string()
                    : "/proc/self/fd/" + std::to_string(place.descriptor) + '/' + place.name) {}

    ssize_t names(char* buffer, std::size_t size) const {
        return path_.empty() ? flistxattr(descriptor_, buffer, size)
                             : llistxattr(path_.c_str(), buffer, size);
    }
    ssize_t value(const char* name, char* buffer, std::size_t size) const {
        return path_.empty() ? fgetxattr(descriptor_, name, buffer, size)
                             : lgetxattr(path_.c_str(), name, buffer, size);
    }
    bool has(const char* name) const { return value(name, nullptr, 0) >= 0; }
    int set(const char* name, const std::string& value) const {
        return path_.empty() ? fsetxattr(descriptor_, name, value.data(), value.size(), 0)
                             : lsetxattr(path_.c_str(), name, value.data(), value.size(), 0);
    }
    int remove(const char* name) const {
        return path_.empty() ? fremovexattr(descriptor_, name) : lremovexattr(path_.c_str(), name);
    }

private:
    int descriptor_;
    std::string path_;
};

/// What `read` says, whose length nobody knows before.
template <class Read>
FileSystem::Result<std::string> readWhole(const Read& read) {
    std::string bytes(256, '\0');
    for (;;) {
        const auto length = retried([&read, &bytes] { return read(bytes.data(), bytes.size()); });
        if (length < 0 && errno != ERANGE)
            return lastError();
        if (length >= 0) {
            bytes.resize(static_cast<std::size_t>(length));
            return bytes;
        }
        bytes.resize(bytes.size() * 4);
    }
}

FileSystem::Result<std::vector<std::string>> namesOf(const Attributes& item) {
    const auto packed =
        readWhole([&item](char* buffer, std::size_t size) { return item.names(buffer, size); });
    if (!packed && isBeyondTarget(packed.error().code))
        return {};
    if (!packed)
        return std::unexpected(packed.error());
    std::vector<std::string> names;
    for (std::size_t begin = 0; begin < packed->size();) {
        names.emplace_back(packed->c_str() + begin);
        begin += names.back().size() + 1;
    }
    return names;
}

/// Some may be read and written by the system or its administrator only, and some file systems
/// have none at all; another may have been removed meanwhile.
bool isNoFailure(int errorCode) {
    return isBeyondTarget(errorCode) || errorCode == ENODATA || errorCode == E2BIG ||
           errorCode == ERANGE;
}

/// What an access list gives to the owning group itself, as bits of a mode. The mode of an item
/// with a list tells the most that any group or named user has.
mode_t rightsOfGroup(const std::string& list) {
    constexpr std::size_t headerSize = 4;
    constexpr std::size_t entrySize = 8; // tag, rights and user or group
    constexpr char owningGroup = 4;
    for (auto at = headerSize; at + entrySize <= list.size(); at += entrySize) {
        if (list[at] == owningGroup)
            return static_cast<mode_t>(list[at + 2] & 7) << 3U;
    }
    return 0;
}

Result copyOne(const Attributes& from, const Attributes& to, const std::string& name,
               mode_t& mode) {
    const auto value = readWhole([&from, &name](char* buffer, std::size_t size) {
        return from.value(name.c_str(), buffer, size);
    });
    if (!value)
        return std::unexpected(value.error());
    if (retried([&] { return to.set(name.c_str(), *value); }) == 0)
        return {};
    auto error = lastError();
    if (name == accessList)
        mode &= ~static_cast<mode_t>(S_IRWXG) | rightsOfGroup(*value);
    return error;
}

/// An access list that came from the folder would let in whom the source does not.
Result removeInherited(const Attributes& to, const char* name) {
    if (to.has(name) && to.remove(name) != 0)
        return lastError();
    return {};
}

} // namespace

Result copyAttributes(const ItemPlace& fromPlace, const ItemPlace& toPlace, mode_t& mode) {
    const Attributes from(fromPlace);
    const Attributes to(toPlace);
    const auto names = namesOf(from);
    if (!names)
        return std::unexpected(names.error());
    Result first;
    const auto goOn = [&first](Result next) {
        if (first && !next && !isNoFailure(next.error().code))
            first = std::move(next);
    };
    for (const auto& name : *names)
        goOn(copyOne(from, to, name, mode));
    const auto removeUnlisted = [&](const char* list) {
        if (std::ranges::find(*names, list) == names->end())
            goOn(removeInherited(to, list));
    };
    if (!S_ISLNK(mode))
        removeUnlisted(accessList);
    if (S_ISDIR(mode))
        removeUnlisted(inheritedList);
    return first;
}

} // namespace fennik
