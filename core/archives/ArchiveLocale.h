#pragma once

#include <clocale>

namespace fennik {

/// As long as it lives, characters are UTF-8 for the C library on this thread, whatever the
/// environment says: without that, the archive library loses names while it reads and spoils them
/// while it writes. Held around its calls; changes nothing for other threads, and nothing but
/// characters for this one.
class ArchiveLocale {
public:
    ArchiveLocale();
    ~ArchiveLocale();
    ArchiveLocale(const ArchiveLocale&) = delete;
    ArchiveLocale& operator=(const ArchiveLocale&) = delete;

private:
    locale_t before_;
};

} // namespace fennik
