#include "core/listing/FolderSizer.h"

#include "core/listing/DirectoryReader.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstring>
#include <memory>
#include <mutex>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace fennik::FolderSizer {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using IsStopped = std::function<bool()>;

/// Trees with fewer folders are walked before a second thread has begun.
constexpr int foldersWorthAThread = 16;
/// Entries examined between two looks at the cancellation.
constexpr unsigned entriesPerLook = 16;
/// How long the calling thread waits for the other one before it looks at the cancellation again.
constexpr auto patience = 10ms;
constexpr auto betweenTellings = 100ms;

void add(Result& total, const Result& part) {
    total.bytes += part.bytes;
    total.files += part.files;
    total.folders += part.folders;
}

/// What one folder holds, and the names of the folders in it, each ended by a zero byte.
struct Found {
    Result own;
    std::string folders;

    void take(std::string_view name, FileType type, std::int64_t size) {
        if (type != FileType::directory) {
            ++own.files;
            own.bytes += type == FileType::regular ? size : 0;
            return;
        }
        ++own.folders;
        folders += name;
        folders += '\0';
    }
};

/// Folders of one parent that are still to be read. Their paths are made one at a time, so that a
/// folder with very many folders costs little more than their names.
struct Waiting {
    std::string parent; ///< ends with a separator
    std::string names;
    std::size_t position = 0;
};

FileType typeOf(FileKind kind) {
    if (kind == FileKind::file)
        return FileType::regular;
    return kind == FileKind::directory ? FileType::directory : FileType::other;
}

/// One walk, shared by the threads that do it. Folders wait on a stack, and so few of them wait at
/// a time.
class Walk {
public:
    Walk(const FileSystem& files, std::unordered_set<std::string> skipped)
        : files_(files), skipped_(std::move(skipped)) {}

    /// Reads one folder, without the lock, and adds what it holds. False when it cannot be read.
    bool read(const std::string& path, FollowLinks follow, const IsStopped& isStopped) {
        auto found = find(path, follow, isStopped);
        if (!found)
            return false;
        const std::lock_guard lock(mutex_);
        add(total_, found->own);
        if (found->folders.empty())
            return true;
        waiting_.push_back({path.ends_with('/') ? path : path + '/', std::move(found->folders)});
        changed_.notify_one();
        return true;
    }

    /// Reads one waiting folder, or waits for `interval` at most until one comes. False when there
    /// will be no more, or when `isStopped` says so.
    bool step(const IsStopped& isStopped, std::chrono::milliseconds interval) {
        std::unique_lock lock(mutex_);
        if (isOver())
            return false;
        if (waiting_.empty()) {
            changed_.wait_for(lock, interval);
        } else {
            const auto path = takeFolder();
            ++reading_;
            lock.unlock();
            if (!skipped_.contains(path))
                read(path, FollowLinks::no, isStopped);
            lock.lock();
            --reading_;
            if (isOver())
                changed_.notify_all();
        }
        lock.unlock();
        return !isStopped();
    }

    void stop() {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
        changed_.notify_all();
    }
    bool isStopped() const { return stopped_; }
    Result total() {
        const std::lock_guard lock(mutex_);
        return total_;
    }

private:
    std::optional<Found> find(const std::string& path, FollowLinks follow,
                              const IsStopped& isStopped) const {
        Found found;
        unsigned entries = 0;
        auto read = files_.readSizes(path, follow, [&](const SizeEntry& entry) {
            found.take(entry.name, entry.type, entry.size);
            const bool looks = ++entries % entriesPerLook == 0;
            return looks && isStopped() ? Reading::stop : Reading::goOn;
        });
        if (!read && (read.error().code == ENOTSUP || read.error().code == EINVAL)) {
            found = {};
            read = DirectoryReader::read(files_, FileUrl(path),
                                         [&found](const DirectoryReader::Entry& entry) {
                                             found.take(entry.name, typeOf(entry.kind), entry.size);
                                         });
        }
        return read ? std::optional(std::move(found)) : std::nullopt;
    }

    // All below are called with the lock held.
    bool isOver() const { return stopped_ || (waiting_.empty() && reading_ == 0); }

    std::string takeFolder() {
        auto& last = waiting_.back();
        const char* name = last.names.c_str() + last.position;
        auto path = last.parent + name;
        last.position += std::strlen(name) + 1;
        if (last.position == last.names.size())
            waiting_.pop_back();
        return path;
    }

    const FileSystem& files_;
    const std::unordered_set<std::string> skipped_;
    std::atomic<bool> stopped_ = false;
    std::mutex mutex_; // guards all below
    std::condition_variable changed_;
    std::vector<Waiting> waiting_;
    int reading_ = 0; ///< folders being read
    Result total_;
};

/// Detached, as it may hang in a call for ever. The walk stays alive as long as it does.
void startHelper(const std::shared_ptr<Walk>& walk) {
    try {
        std::thread([walk] {
            while (walk->step([&walk] { return walk->isStopped(); }, 1h)) {
            }
        }).detach();
    } catch (const std::system_error&) {
        // No further thread is to be had, so this one does all the work.
        return;
    }
}

} // namespace

std::optional<Result> size(const FileSystem& files, const FileUrl& folder,
                           const std::function<bool()>& isCancelled,
                           const std::unordered_set<std::string>& skipped,
                           const Progress& progress) {
    const auto walk = std::make_shared<Walk>(files, skipped);
    const auto stopWhenCancelled = [&] {
        if (isCancelled())
            walk->stop();
        return walk->isStopped();
    };
    if (stopWhenCancelled() || !walk->read(folder.path(), FollowLinks::yes, stopWhenCancelled))
        return std::nullopt;
    auto tellAt = Clock::now() + betweenTellings;
    for (int steps = 1; walk->step(stopWhenCancelled, patience); ++steps) {
        if (steps == foldersWorthAThread)
            startHelper(walk);
        if (const auto now = Clock::now(); progress && now >= tellAt) {
            tellAt = now + betweenTellings;
            progress(walk->total());
        }
    }
    return walk->isStopped() ? std::nullopt : std::optional(walk->total());
}

} // namespace fennik::FolderSizer
