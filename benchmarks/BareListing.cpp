#include "benchmarks/BareListing.h"

#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace fennik::bench {

namespace {

constexpr std::size_t namesPerBlock = 1024;

[[noreturn]] void fail(const char* what) {
    std::perror(what);
    std::exit(EXIT_FAILURE);
}

void count(const struct statx& info, Totals& totals) {
    ++totals.entries;
    if (!S_ISDIR(info.stx_mode))
        totals.bytes += static_cast<std::int64_t>(info.stx_size);
}

using Names = std::vector<const char*>;

/// Blocks of names that one thread adds and both take.
class Blocks {
public:
    void add(Names names) {
        const std::lock_guard lock(mutex_);
        waiting_.push_back(std::move(names));
        changed_.notify_one();
    }

    void end() {
        const std::lock_guard lock(mutex_);
        ended_ = true;
        changed_.notify_one();
    }

    /// Waits for a block; an empty one at the end.
    Names take() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return ended_ || !waiting_.empty(); });
        if (waiting_.empty())
            return {};
        auto names = std::move(waiting_.front());
        waiting_.pop_front();
        return names;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Names> waiting_;
    bool ended_ = false;
};

Totals examineAll(const OpenFolder& folder, Blocks& blocks) {
    Totals totals;
    for (auto names = blocks.take(); !names.empty(); names = blocks.take()) {
        for (const char* name : names)
            count(folder.examine(name), totals);
    }
    return totals;
}

} // namespace

OpenFolder::OpenFolder(const std::string& path)
    : number_(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (number_ < 0)
        fail(path.c_str());
}

std::size_t OpenFolder::read(char* buffer, std::size_t size) const {
    const auto length = syscall(SYS_getdents64, number_, buffer, size);
    if (length < 0)
        fail("getdents64");
    return static_cast<std::size_t>(length);
}

struct statx OpenFolder::examine(const char* name, unsigned wanted) const {
    struct statx info{};
    if (statx(number_, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, wanted, &info) != 0)
        fail(name);
    return info;
}

Totals listOnOneThread(const std::string& folder) {
    Totals totals;
    forEachEntry(folder, [&totals](const char*, const struct statx& info) { count(info, totals); });
    return totals;
}

Totals listOnTwoThreads(const std::string& path) {
    const OpenFolder folder(path);
    Blocks blocks;
    Totals ofHelper;
    std::thread helper([&] { ofHelper = examineAll(folder, blocks); });

    std::vector<std::unique_ptr<char[]>> buffers;
    Names filling;
    filling.reserve(namesPerBlock);
    for (;;) {
        auto buffer = std::make_unique_for_overwrite<char[]>(namesBuffer);
        const auto length = folder.read(buffer.get());
        if (length == 0)
            break;
        forEachName(buffer.get(), length, [&](const char* name) {
            filling.push_back(name);
            if (filling.size() < namesPerBlock)
                return;
            blocks.add(std::exchange(filling, {}));
            filling.reserve(namesPerBlock);
        });
        buffers.push_back(std::move(buffer));
    }
    if (!filling.empty())
        blocks.add(std::move(filling));
    blocks.end();

    auto totals = examineAll(folder, blocks);
    helper.join();
    totals.entries += ofHelper.entries;
    totals.bytes += ofHelper.bytes;
    return totals;
}

} // namespace fennik::bench
