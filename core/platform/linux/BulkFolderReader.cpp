#include "core/platform/linux/BulkFolderReader.h"

#include "core/platform/linux/NameRecords.h"
#include "core/platform/posix/Descriptor.h"
#include "core/platform/posix/PosixCalls.h"
#include "core/platform/posix/PosixFileSystem.h"

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <span>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <vector>

namespace fennik {

namespace {

constexpr std::size_t bufferSize = 256UL * 1024;
constexpr std::size_t blockLength = 1024;
/// Fewer blocks than this are examined as fast by one thread as by two.
constexpr std::size_t blocksWorthAThread = 4;

enum class Examination { pending, done, failed, absent };

struct Slot {
    const char* name = nullptr; ///< inside one of the buffers
    std::int64_t size = 0;
    Date modified = Date::distantPast();
    std::uint16_t nameLength = 0;
    std::uint16_t mode = 0;
    unsigned char entryType = DT_UNKNOWN;
    FileType type = FileType::other;
    Examination examination = Examination::pending;
};

using Block = std::vector<Slot>;

/// Fills the slot; gives the code of an error that speaks of the call itself, not of the entry.
int examine(int folder, Slot& slot) {
    struct statx info{};
    constexpr auto wanted = STATX_TYPE | STATX_MODE | STATX_SIZE | STATX_MTIME;
    if (statx(folder, slot.name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, wanted, &info) != 0) {
        slot.type = fileTypeOfEntry(slot.entryType);
        slot.examination = listsUnexamined(errno) ? Examination::failed : Examination::absent;
        return errno == ENOSYS || errno == EINVAL ? ENOTSUP : 0;
    }
    const auto returned = [&info](unsigned mask) { return (info.stx_mask & mask) != 0; };
    slot.type = returned(STATX_TYPE) ? fileTypeOfMode(info.stx_mode) : FileType::other;
    slot.mode = returned(STATX_MODE) ? static_cast<std::uint16_t>(info.stx_mode & 07777U) : 0;
    if (returned(STATX_SIZE) && slot.type != FileType::directory)
        slot.size = static_cast<std::int64_t>(info.stx_size);
    if (returned(STATX_MTIME))
        slot.modified = {info.stx_mtime.tv_sec, info.stx_mtime.tv_nsec};
    slot.examination = Examination::done;
    return 0;
}

/// One reading of one folder. The reading thread appends full blocks; it and the helper take them
/// in order and examine them. A block's address is stable, and one thread at a time works on it.
class BulkRead {
public:
    explicit BulkRead(int folder) : folder_(folder) {}
    ~BulkRead() { finish(); }
    BulkRead(const BulkRead&) = delete;
    BulkRead& operator=(const BulkRead&) = delete;

    FileSystem::Result<void> run() {
        auto read = readAllNames();
        appendBlock();
        endOfNames();
        while (auto* block = takeBlock())
            examineBlock(*block);
        finish();
        if (!read)
            return read;
        if (callError_ != 0)
            return std::unexpected(PosixError{callError_});
        return {};
    }

    void deliver(const FolderEntryConsumer& consume) const {
        for (const auto& block : blocks_) {
            for (const auto& slot : block) {
                if (slot.examination == Examination::absent)
                    continue;
                consume({.name = {slot.name, slot.nameLength},
                         .type = slot.type,
                         .size = slot.size,
                         .modified = slot.modified,
                         .mode = slot.mode});
            }
        }
    }

private:
    FileSystem::Result<void> readAllNames() {
        for (;;) {
            auto buffer = std::make_unique_for_overwrite<char[]>(bufferSize);
            const auto length = readNames(folder_, {buffer.get(), bufferSize});
            if (!length)
                return std::unexpected(length.error());
            if (*length == 0)
                return {};
            appendNames({buffer.get(), *length});
            buffers_.push_back(std::move(buffer));
        }
    }

    void appendNames(std::span<const char> buffer) {
        NameRecords records(buffer);
        while (const auto record = records.next()) {
            Slot slot;
            slot.name = record->name.data();
            slot.nameLength = static_cast<std::uint16_t>(record->name.size());
            slot.entryType = record->entryType;
            filling_.push_back(slot);
            if (filling_.size() == blockLength)
                appendBlock();
        }
    }

    void appendBlock() {
        if (filling_.empty())
            return;
        bool wantsHelper = false;
        {
            const std::lock_guard lock(mutex_);
            blocks_.push_back(std::move(filling_));
            wantsHelper = blocks_.size() == blocksWorthAThread;
        }
        blockCame_.notify_one();
        filling_ = {};
        filling_.reserve(blockLength);
        if (wantsHelper)
            startHelper();
    }

    void startHelper() {
        try {
            helper_ = std::thread([this] {
                while (auto* block = waitForBlock())
                    examineBlock(*block);
            });
        } catch (const std::system_error&) {
            // No further thread is to be had, so this one does all the work.
            return;
        }
    }

    void endOfNames() {
        const std::lock_guard lock(mutex_);
        allNamesRead_ = true;
        blockCame_.notify_all();
    }

    Block* takeBlock() {
        const std::lock_guard lock(mutex_);
        return taken_ < blocks_.size() ? &blocks_[taken_++] : nullptr;
    }

    Block* waitForBlock() {
        std::unique_lock lock(mutex_);
        blockCame_.wait(lock, [this] { return taken_ < blocks_.size() || allNamesRead_; });
        return taken_ < blocks_.size() ? &blocks_[taken_++] : nullptr;
    }

    void examineBlock(Block& block) {
        int error = 0;
        for (auto& slot : block) {
            error = examine(folder_, slot);
            if (error != 0)
                break;
        }
        if (error == 0)
            return;
        const std::lock_guard lock(mutex_);
        callError_ = error;
        taken_ = blocks_.size();
    }

    void finish() {
        if (!helper_.joinable())
            return;
        endOfNames();
        helper_.join();
    }

    int folder_;
    std::vector<std::unique_ptr<char[]>> buffers_;
    Block filling_;
    std::mutex mutex_; // guards all below
    std::condition_variable blockCame_;
    std::deque<Block> blocks_;
    std::size_t taken_ = 0;
    bool allNamesRead_ = false;
    int callError_ = 0;
    std::thread helper_;
};

} // namespace

FileSystem::Result<void> readFolderInBulk(const std::string& path,
                                          const FolderEntryConsumer& consume) {
    const Descriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.number() < 0)
        return std::unexpected(PosixError{errno});
    BulkRead reading(folder.number());
    if (auto read = reading.run(); !read)
        return read;
    reading.deliver(consume);
    return {};
}

} // namespace fennik
