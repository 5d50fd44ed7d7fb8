#pragma once

#include "core/base/Date.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace fennik {

/// Remembers sizes of folders for a while, by their paths. Shared by both panels; safe on several
/// threads at once, and no call waits for anything but another call.
class FolderSizeCache {
public:
    struct Entry {
        std::int64_t bytes = 0;
        std::int64_t files = 0;
        Date date; ///< when the size was computed

        friend bool operator==(const Entry&, const Entry&) = default;
    };

    /// `lifetime`: seconds for which an entry is valid.
    explicit FolderSizeCache(double lifetime) : lifetime_(lifetime) {}

    /// Nothing when there is no entry, or it is too old.
    std::optional<Entry> lookup(const std::string& path, Date now) const;
    /// Adds an entry or replaces it.
    void store(const std::string& path, std::int64_t bytes, std::int64_t files, Date date);
    /// Drops the entry, where there is one: the folder is gone.
    void forget(const std::string& path);

private:
    bool isValid(const Entry& entry, Date now) const;

    const double lifetime_;
    mutable std::mutex lock_; // guards all below
    std::unordered_map<std::string, Entry> map_;
    std::size_t clearedAt_ = 1024; ///< entries; then the old ones are dropped
};

} // namespace fennik
