#include "core/archives/ArchiveLocale.h"

#include <array>
#include <cstring>
#include <langinfo.h>

namespace fennik {

namespace {

/// None where the system has no such locale, or it is not of UTF-8.
locale_t utf8Locale(const char* name) {
    auto* const base = duplocale(LC_GLOBAL_LOCALE);
    auto* const result = newlocale(LC_CTYPE_MASK, name, base);
    if (result == nullptr)
        freelocale(base);
    if (result == nullptr || std::strcmp(nl_langinfo_l(CODESET, result), "UTF-8") == 0)
        return result;
    freelocale(result);
    return nullptr;
}

/// The first one belongs to the C library itself, the last one to the environment. Without any, the
/// thread stays as it is.
locale_t anyUtf8Locale() {
    constexpr std::array names = {"C.UTF-8", "POSIX.UTF-8", "cs_CZ.UTF-8", "en_US.UTF-8", ""};
    for (const char* name : names)
        if (auto* const found = utf8Locale(name))
            return found;
    return nullptr;
}

} // namespace

ArchiveLocale::ArchiveLocale() {
    static auto* const utf8 = anyUtf8Locale();
    before_ = uselocale(utf8);
}

ArchiveLocale::~ArchiveLocale() {
    uselocale(before_);
}

} // namespace fennik
