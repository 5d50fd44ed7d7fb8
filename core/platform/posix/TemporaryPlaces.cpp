#include "core/platform/TemporaryPlaces.h"

#include "core/base/Uuid.h"
#include "core/platform/posix/Descriptor.h"
#include "core/platform/posix/PosixCalls.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace fennik {

namespace {

constexpr std::string_view runPrefix = "run-";
constexpr const char* lockName = "lock";
constexpr mode_t ownersOnly = 0700;
constexpr mode_t ownersFile = 0600;

using Failure = std::unexpected<PosixError>;

void removeAll(const std::string& path) {
    std::error_code error;
    std::filesystem::remove_all(path, error);
}

/// The lock of a run's folder, held; none where somebody else holds it or there is none.
std::expected<std::unique_ptr<Descriptor>, PosixError> lockOf(const std::string& run,
                                                              int moreFlags) {
    const auto path = run + "/" + lockName;
    const int flags = O_RDWR | O_CLOEXEC | O_NOFOLLOW | moreFlags;
    auto lock = std::make_unique<Descriptor>(
        retried([&] { return open(path.c_str(), flags, ownersFile); }));
    if (lock->number() < 0)
        return lastError();
    if (flock(lock->number(), LOCK_EX | LOCK_NB) != 0)
        return lastError();
    // Somebody may have removed it between the two.
    const auto locked = statusOf(lock->number());
    const auto there = systemFileSystem().status(path, FollowLinks::no);
    if (!locked || !there || locked->identity() != there->identity())
        return Failure(PosixError{ENOENT});
    return lock;
}

/// Removes the folders of runs whose lock nobody holds.
void removeLeftOver(const std::string& base) {
    std::error_code error;
    for (std::filesystem::directory_iterator entry(base, error), end; !error && entry != end;
         entry.increment(error)) {
        const auto run = entry->path().string();
        if (!entry->path().filename().string().starts_with(runPrefix))
            continue;
        auto lock = lockOf(run, 0);
        // It was made and never locked, or its removal was cut short.
        if (!lock && lock.error().code == ENOENT)
            lock = lockOf(run, O_CREAT | O_EXCL);
        if (lock)
            removeAll(run);
    }
}

} // namespace

struct TemporaryPlaces::State {
    State(FileUrl baseFolder, DiskExecutor& removing, std::int64_t limit)
        : base(std::move(baseFolder)), disk(removing), mostBytes(limit) {}

    const FileUrl base;
    DiskExecutor& disk;
    const std::int64_t mostBytes;

    std::mutex lock;                  ///< guards what follows, also while the disk is waited for
    std::optional<FileUrl> run;       ///< the folder of this run, once there is one
    std::unique_ptr<Descriptor> held; ///< its lock
    bool isClosed = false;

    std::expected<void, PosixError> begin();
};

std::expected<void, PosixError> TemporaryPlaces::State::begin() {
    std::error_code error;
    std::filesystem::create_directories(base.parent().path(), error);
    if (mkdir(base.path().c_str(), ownersOnly) != 0 && errno != EEXIST)
        return lastError();
    // Another run may sweep the new folder away until its lock is held.
    for (;;) {
        const auto folder = base.appending(std::string(runPrefix) + Uuid::random().text(),
                                           FileUrl::Form::directory);
        if (mkdir(folder.path().c_str(), ownersOnly) != 0)
            return lastError();
        auto lockFile = lockOf(folder.path(), O_CREAT | O_EXCL);
        if (lockFile) {
            held = std::move(*lockFile);
            run = folder;
            return {};
        }
        removeAll(folder.path());
        const auto code = lockFile.error().code;
        if (code != ENOENT && code != EEXIST && code != EWOULDBLOCK)
            return Failure(lockFile.error());
    }
}

namespace {

class Place final : public TemporaryPlace {
public:
    Place(FileUrl folder, DiskExecutor& disk) : folder_(std::move(folder)), disk_(disk) {}
    ~Place() override {
        disk_.execute(folder_.path(), [path = folder_.path()] { removeAll(path); });
    }
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;
    const FileUrl& folder() const override { return folder_; }

private:
    FileUrl folder_;
    DiskExecutor& disk_;
};

} // namespace

TemporaryPlaces::TemporaryPlaces(FileUrl base, DiskExecutor& disk, std::int64_t mostBytes)
    : state_(std::make_shared<State>(std::move(base), disk, mostBytes)) {}

TemporaryPlaces::~TemporaryPlaces() {
    close();
}

const FileUrl& TemporaryPlaces::base() const {
    return state_->base;
}

std::int64_t TemporaryPlaces::mostBytes() const {
    return state_->mostBytes;
}

std::expected<std::shared_ptr<const TemporaryPlace>, PosixError> TemporaryPlaces::make() {
    const std::lock_guard guard(state_->lock);
    if (state_->isClosed)
        return Failure(PosixError{ESHUTDOWN});
    if (!state_->run) {
        if (const auto begun = state_->begin(); !begun)
            return Failure(begun.error());
    }
    auto folder = state_->run->appending(Uuid::random().text(), FileUrl::Form::directory);
    if (mkdir(folder.path().c_str(), ownersOnly) != 0)
        return lastError();
    return std::make_shared<const Place>(std::move(folder), state_->disk);
}

void TemporaryPlaces::sweep() {
    const auto& path = state_->base.path();
    state_->disk.execute(path, [path] { removeLeftOver(path); });
}

void TemporaryPlaces::close() {
    const std::lock_guard guard(state_->lock);
    state_->isClosed = true;
    if (!state_->run)
        return;
    removeAll(state_->run->path());
    state_->run.reset();
    state_->held.reset();
}

} // namespace fennik
