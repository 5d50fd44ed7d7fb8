#include "core/platform/UserFolders.h"

#include <array>
#include <cstdlib>
#include <pwd.h>
#include <string_view>
#include <unistd.h>

namespace fennik::UserFolders {

FileUrl home() {
    // The environment is read at start, before any thread could change it.
    const char* fromEnvironment = std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe)
    if (fromEnvironment != nullptr && std::string_view(fromEnvironment).starts_with('/'))
        return FileUrl(fromEnvironment, FileUrl::Form::directory).standardized();
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 &&
        found != nullptr && std::string_view(found->pw_dir).starts_with('/'))
        return FileUrl(found->pw_dir, FileUrl::Form::directory).standardized();
    return {};
}

FileUrl cache() {
    const char* given = std::getenv("XDG_CACHE_HOME"); // NOLINT(concurrency-mt-unsafe)
    const bool isGiven = given != nullptr && std::string_view(given).starts_with('/');
    const auto caches = isGiven ? FileUrl(given).standardized() : home().appending(".cache");
    return caches.appending("fennik", FileUrl::Form::directory);
}

} // namespace fennik::UserFolders
