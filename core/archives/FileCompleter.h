#pragma once

#include "core/operations/FolderNode.h"
#include "core/platform/NewItems.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace fennik {

/// Completes new files: one by one, or small ones on a thread of its own while the next ones are
/// being made. Used on one thread, which lends a hand where the other one falls behind.
class FileCompleter {
public:
    /// A file that only lacks this.
    struct Work {
        NewFile file;
        FolderNode::Held folder = {}; ///< that holds it
        /// From its beginning, unless that was written already.
        std::vector<std::byte> content = {};
        std::int64_t size = 0;
        std::uint16_t mode = 0; ///< taken as it is
        Date modified = {};
    };
    struct End {
        std::optional<PosixError> failure = {};  ///< after which nothing is left of the file,
        std::optional<PosixError> leftover = {}; ///< unless it could not be removed
    };
    using OnEnd = std::function<void(const End& end)>;

    FileCompleter();
    FileCompleter(const FileCompleter&) = delete;
    FileCompleter& operator=(const FileCompleter&) = delete;
    /// Completes what is left, of which nobody is told any more.
    ~FileCompleter();

    /// As `NewFile::make`; where no more may be open, only after those that wait were completed.
    NewFile::Result<NewFile> make(const OpenFolder& folder, const std::string& name);
    static End complete(Work work);
    /// `onEnd` is called by some later call, in the order of the files.
    void completeLater(Work work, OnEnd onEnd);
    /// Tells of those that have ended, and does not wait.
    void collect();
    /// Waits for all, and tells of them.
    void finish();

private:
    struct Item {
        Work work;
        OnEnd onEnd = {};
        std::optional<End> end = {};
    };
    using Items = std::list<Item>;

    void begin();
    void run();
    /// Completes the next file that nobody has begun; false where there is none. Gives the lock up
    /// meanwhile.
    bool completeNext(std::unique_lock<std::mutex>& lock);

    const std::size_t mostWaiting_;
    std::mutex mutex_;
    std::condition_variable hasWork_;
    std::condition_variable hasEnd_;
    Items items_;                         ///< in their order, until they are told of
    Items::iterator next_ = items_.end(); ///< the first one that nobody has begun
    bool isOver_ = false;
    std::thread thread_; ///< once two files wait, as far as the system gives one
};

} // namespace fennik
