#include "core/listing/FolderSizeCache.h"

#include <algorithm>

namespace fennik {

bool FolderSizeCache::isValid(const Entry& entry, Date now) const {
    const auto seconds = static_cast<double>(now.seconds) - static_cast<double>(entry.date.seconds);
    const auto rest =
        static_cast<double>(now.nanoseconds) - static_cast<double>(entry.date.nanoseconds);
    return seconds + rest / 1e9 < lifetime_;
}

std::optional<FolderSizeCache::Entry> FolderSizeCache::lookup(const std::string& path,
                                                              Date now) const {
    const std::lock_guard lock(lock_);
    const auto found = map_.find(path);
    return found != map_.end() && isValid(found->second, now) ? std::optional(found->second)
                                                              : std::nullopt;
}

void FolderSizeCache::store(const std::string& path, std::int64_t bytes, std::int64_t files,
                            Date date) {
    const std::lock_guard lock(lock_);
    map_.insert_or_assign(path, Entry{bytes, files, date});
    if (map_.size() < clearedAt_)
        return;
    std::erase_if(map_, [&](const auto& entry) { return !isValid(entry.second, date); });
    clearedAt_ = std::max(clearedAt_, map_.size() * 2);
}

void FolderSizeCache::forget(const std::string& path) {
    const std::lock_guard lock(lock_);
    map_.erase(path);
}

} // namespace fennik
