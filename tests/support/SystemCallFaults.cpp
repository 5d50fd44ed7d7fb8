#include "tests/support/SystemCallFaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <limits>
#include <mutex>
#include <string>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <type_traits>
#include <unistd.h>
#include <utility>

namespace fennik::test {

class FaultInjection::Injected {
public:
    explicit Injected(Fault fault) : fault_(std::move(fault)) {}

    /// Counts the call where it is concerned, and tells whether it is struck.
    bool strikes(SystemCall call) {
        if (!fault_.calls.empty() && std::ranges::find(fault_.calls, call) == fault_.calls.end())
            return false;
        ++calls_;
        return fault_.number == 0 || calls_ == fault_.number;
    }

    const Fault& fault() const { return fault_; }
    int calls() const { return calls_; }

private:
    const Fault fault_;
    std::atomic<int> calls_ = 0;
};

namespace {

using Injected = FaultInjection::Injected;

constexpr auto anyLength = std::numeric_limits<std::size_t>::max();

// The calls come from code that knows nothing of tests, so what they meet is found globally.
std::atomic<int> injectionCount = 0;
std::mutex injectionsMutex;
std::vector<std::shared_ptr<Injected>>
    injections; // NOLINT(bugprone-throwing-static-initialization)
thread_local bool isLetThrough = false;

struct Effect {
    int errorCode = 0;
    std::size_t mostBytes = anyLength;
};

std::vector<std::shared_ptr<Injected>> strikingInjections(SystemCall call) {
    const std::scoped_lock lock(injectionsMutex);
    std::vector<std::shared_ptr<Injected>> striking;
    for (const auto& injected : injections)
        if (injected->strikes(call))
            striking.push_back(injected);
    return striking;
}

Effect effectOn(SystemCall call) {
    Effect effect;
    if (injectionCount == 0 || isLetThrough)
        return effect;
    const int errorBefore = errno;
    for (const auto& injected : strikingInjections(call)) {
        const auto& fault = injected->fault();
        if (fault.endsProcess)
            _exit(endedByFault);
        if (fault.before) {
            isLetThrough = true;
            fault.before();
            isLetThrough = false;
        }
        if (fault.errorCode != 0)
            effect.errorCode = fault.errorCode;
        effect.mostBytes = std::min(effect.mostBytes, fault.mostBytes.value_or(anyLength));
    }
    errno = errorBefore;
    return effect;
}

template <class Result>
Result failed() {
    if constexpr (std::is_pointer_v<Result>)
        return nullptr;
    else
        return -1;
}

/// `make` makes the call with as many bytes as it is given at most.
template <class Make>
auto interfere(SystemCall call, const Make& make) {
    const auto effect = effectOn(call);
    if (effect.errorCode != 0) {
        errno = effect.errorCode;
        return failed<decltype(make(anyLength))>();
    }
    return make(effect.mostBytes);
}

/// Runs `act` in a child process that the fault may end. Tells whether it did.
bool endsInChild(const Fault& fault, const std::function<void()>& act) {
    std::fflush(nullptr);
    const auto child = fork();
    if (child == 0) {
        {
            const FaultInjection injection(fault);
            act();
        }
        std::fflush(nullptr);
        _exit(0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status)) << "the child died by itself";
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 0;
    EXPECT_TRUE(code == 0 || code == endedByFault) << "exit code " << code;
    return code == endedByFault;
}

} // namespace

FaultInjection::FaultInjection(Fault fault)
    : injected_(std::make_shared<Injected>(std::move(fault))) {
    const std::scoped_lock lock(injectionsMutex);
    injections.push_back(injected_);
    ++injectionCount;
}

FaultInjection::~FaultInjection() {
    const std::scoped_lock lock(injectionsMutex);
    std::erase(injections, injected_);
    --injectionCount;
}

int FaultInjection::calls() const {
    return injected_->calls();
}

bool FaultInjection::struck() const {
    return injected_->calls() >= std::max(1, injected_->fault().number);
}

int forEachCall(Fault fault, const Trial& trial) {
    constexpr int endless = 100'000;
    for (fault.number = 1; fault.number < endless; ++fault.number) {
        const testing::ScopedTrace trace(__FILE__, __LINE__,
                                         "at call " + std::to_string(fault.number));
        trial.prepare();
        bool struck = false;
        if (fault.endsProcess) {
            struck = endsInChild(fault, trial.act);
        } else {
            const FaultInjection injection(fault);
            trial.act();
            struck = injection.struck();
        }
        trial.check();
        if (!struck || testing::Test::HasFailure())
            return fault.number - 1;
    }
    ADD_FAILURE() << "no end of calls";
    return endless;
}

} // namespace fennik::test

// The linker leads the calls of this executable to __wrap_, and __real_ to the system's own.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,cppcoreguidelines-pro-type-vararg)
extern "C" {

using fennik::test::interfere;
using fennik::test::SystemCall;

int __real_open(const char* path, int flags, ...);
int __wrap_open(const char* path, int flags, ...) {
    mode_t mode = 0;
    if ((flags & (O_CREAT | O_TMPFILE)) != 0) {
        va_list rest;
        va_start(rest, flags);
        mode = va_arg(rest, mode_t);
        va_end(rest);
    }
    return interfere(SystemCall::open, [=](size_t) { return __real_open(path, flags, mode); });
}

int __real_openat(int folder, const char* path, int flags, ...);
int __wrap_openat(int folder, const char* path, int flags, ...) {
    mode_t mode = 0;
    if ((flags & (O_CREAT | O_TMPFILE)) != 0) {
        va_list rest;
        va_start(rest, flags);
        mode = va_arg(rest, mode_t);
        va_end(rest);
    }
    return interfere(SystemCall::openat,
                     [=](size_t) { return __real_openat(folder, path, flags, mode); });
}

// Every request in use takes a pointer or a number of its size.
int __real_ioctl(int descriptor, unsigned long request, ...);
int __wrap_ioctl(int descriptor, unsigned long request, ...) {
    va_list rest;
    va_start(rest, request);
    void* argument = va_arg(rest, void*);
    va_end(rest);
    return interfere(SystemCall::ioctl,
                     [=](size_t) { return __real_ioctl(descriptor, request, argument); });
}

int __real_close(int descriptor);
int __wrap_close(int descriptor) {
    const int announced = interfere(SystemCall::close, [](size_t) { return 0; });
    const int errorCode = errno;
    const int closed = __real_close(descriptor);
    if (announced == 0)
        return closed;
    errno = errorCode;
    return announced;
}

int __real_stat(const char* path, struct stat* info);
int __wrap_stat(const char* path, struct stat* info) {
    return interfere(SystemCall::stat, [=](size_t) { return __real_stat(path, info); });
}

int __real_lstat(const char* path, struct stat* info);
int __wrap_lstat(const char* path, struct stat* info) {
    return interfere(SystemCall::lstat, [=](size_t) { return __real_lstat(path, info); });
}

int __real_fstat(int descriptor, struct stat* info);
int __wrap_fstat(int descriptor, struct stat* info) {
    return interfere(SystemCall::fstat, [=](size_t) { return __real_fstat(descriptor, info); });
}

int __real_fstatat(int folder, const char* path, struct stat* info, int flags);
int __wrap_fstatat(int folder, const char* path, struct stat* info, int flags) {
    return interfere(SystemCall::fstatat,
                     [=](size_t) { return __real_fstatat(folder, path, info, flags); });
}

int __real_statx(int folder, const char* path, int flags, unsigned mask, struct statx* info);
int __wrap_statx(int folder, const char* path, int flags, unsigned mask, struct statx* info) {
    return interfere(SystemCall::statx,
                     [=](size_t) { return __real_statx(folder, path, flags, mask, info); });
}

DIR* __real_fdopendir(int descriptor);
DIR* __wrap_fdopendir(int descriptor) {
    return interfere(SystemCall::fdopendir, [=](size_t) { return __real_fdopendir(descriptor); });
}

dirent* __real_readdir(DIR* folder);
dirent* __wrap_readdir(DIR* folder) {
    return interfere(SystemCall::readdir, [=](size_t) { return __real_readdir(folder); });
}

ssize_t __real_readlinkat(int folder, const char* path, char* buffer, size_t size);
ssize_t __wrap_readlinkat(int folder, const char* path, char* buffer, size_t size) {
    return interfere(SystemCall::readlinkat,
                     [=](size_t) { return __real_readlinkat(folder, path, buffer, size); });
}

int __real_mkdirat(int folder, const char* path, mode_t mode);
int __wrap_mkdirat(int folder, const char* path, mode_t mode) {
    return interfere(SystemCall::mkdirat,
                     [=](size_t) { return __real_mkdirat(folder, path, mode); });
}

int __real_mkfifoat(int folder, const char* path, mode_t mode);
int __wrap_mkfifoat(int folder, const char* path, mode_t mode) {
    return interfere(SystemCall::mkfifoat,
                     [=](size_t) { return __real_mkfifoat(folder, path, mode); });
}

int __real_mknodat(int folder, const char* path, mode_t mode, dev_t device);
int __wrap_mknodat(int folder, const char* path, mode_t mode, dev_t device) {
    return interfere(SystemCall::mknodat,
                     [=](size_t) { return __real_mknodat(folder, path, mode, device); });
}

int __real_symlinkat(const char* target, int folder, const char* path);
int __wrap_symlinkat(const char* target, int folder, const char* path) {
    return interfere(SystemCall::symlinkat,
                     [=](size_t) { return __real_symlinkat(target, folder, path); });
}

int __real_linkat(int from, const char* name, int to, const char* newName, int flags);
int __wrap_linkat(int from, const char* name, int to, const char* newName, int flags) {
    return interfere(SystemCall::linkat,
                     [=](size_t) { return __real_linkat(from, name, to, newName, flags); });
}

int __real_unlinkat(int folder, const char* path, int flags);
int __wrap_unlinkat(int folder, const char* path, int flags) {
    return interfere(SystemCall::unlinkat,
                     [=](size_t) { return __real_unlinkat(folder, path, flags); });
}

int __real_renameat(int from, const char* name, int to, const char* newName);
int __wrap_renameat(int from, const char* name, int to, const char* newName) {
    return interfere(SystemCall::renameat,
                     [=](size_t) { return __real_renameat(from, name, to, newName); });
}

int __real_renameat2(int from, const char* name, int to, const char* newName, unsigned flags);
int __wrap_renameat2(int from, const char* name, int to, const char* newName, unsigned flags) {
    return interfere(SystemCall::renameat2,
                     [=](size_t) { return __real_renameat2(from, name, to, newName, flags); });
}

ssize_t __real_read(int descriptor, void* buffer, size_t size);
ssize_t __wrap_read(int descriptor, void* buffer, size_t size) {
    return interfere(SystemCall::read, [=](size_t most) {
        return __real_read(descriptor, buffer, std::min(size, most));
    });
}

ssize_t __real_pread(int descriptor, void* buffer, size_t size, off_t offset);
ssize_t __wrap_pread(int descriptor, void* buffer, size_t size, off_t offset) {
    return interfere(SystemCall::pread, [=](size_t most) {
        return __real_pread(descriptor, buffer, std::min(size, most), offset);
    });
}

ssize_t __real_write(int descriptor, const void* buffer, size_t size);
ssize_t __wrap_write(int descriptor, const void* buffer, size_t size) {
    return interfere(SystemCall::write, [=](size_t most) {
        return __real_write(descriptor, buffer, std::min(size, most));
    });
}

ssize_t __real_pwrite(int descriptor, const void* buffer, size_t size, off_t offset);
ssize_t __wrap_pwrite(int descriptor, const void* buffer, size_t size, off_t offset) {
    return interfere(SystemCall::pwrite, [=](size_t most) {
        return __real_pwrite(descriptor, buffer, std::min(size, most), offset);
    });
}

ssize_t __real_copy_file_range(int from, off_t* fromOffset, int to, off_t* toOffset, size_t size,
                               unsigned flags);
ssize_t __wrap_copy_file_range(int from, off_t* fromOffset, int to, off_t* toOffset, size_t size,
                               unsigned flags) {
    return interfere(SystemCall::copy_file_range, [=](size_t most) {
        return __real_copy_file_range(from, fromOffset, to, toOffset, std::min(size, most), flags);
    });
}

off_t __real_lseek(int descriptor, off_t offset, int whence);
off_t __wrap_lseek(int descriptor, off_t offset, int whence) {
    return interfere(SystemCall::lseek,
                     [=](size_t) { return __real_lseek(descriptor, offset, whence); });
}

int __real_ftruncate(int descriptor, off_t length);
int __wrap_ftruncate(int descriptor, off_t length) {
    return interfere(SystemCall::ftruncate,
                     [=](size_t) { return __real_ftruncate(descriptor, length); });
}

int __real_fallocate(int descriptor, int mode, off_t offset, off_t length);
int __wrap_fallocate(int descriptor, int mode, off_t offset, off_t length) {
    return interfere(SystemCall::fallocate,
                     [=](size_t) { return __real_fallocate(descriptor, mode, offset, length); });
}

int __real_fsync(int descriptor);
int __wrap_fsync(int descriptor) {
    return interfere(SystemCall::fsync, [=](size_t) { return __real_fsync(descriptor); });
}

int __real_fdatasync(int descriptor);
int __wrap_fdatasync(int descriptor) {
    return interfere(SystemCall::fdatasync, [=](size_t) { return __real_fdatasync(descriptor); });
}

int __real_syncfs(int descriptor);
int __wrap_syncfs(int descriptor) {
    return interfere(SystemCall::syncfs, [=](size_t) { return __real_syncfs(descriptor); });
}

int __real_fchmod(int descriptor, mode_t mode);
int __wrap_fchmod(int descriptor, mode_t mode) {
    return interfere(SystemCall::fchmod, [=](size_t) { return __real_fchmod(descriptor, mode); });
}

int __real_fchmodat(int folder, const char* path, mode_t mode, int flags);
int __wrap_fchmodat(int folder, const char* path, mode_t mode, int flags) {
    return interfere(SystemCall::fchmodat,
                     [=](size_t) { return __real_fchmodat(folder, path, mode, flags); });
}

int __real_fchown(int descriptor, uid_t owner, gid_t group);
int __wrap_fchown(int descriptor, uid_t owner, gid_t group) {
    return interfere(SystemCall::fchown,
                     [=](size_t) { return __real_fchown(descriptor, owner, group); });
}

int __real_fchownat(int folder, const char* path, uid_t owner, gid_t group, int flags);
int __wrap_fchownat(int folder, const char* path, uid_t owner, gid_t group, int flags) {
    return interfere(SystemCall::fchownat,
                     [=](size_t) { return __real_fchownat(folder, path, owner, group, flags); });
}

int __real_futimens(int descriptor, const timespec* times);
int __wrap_futimens(int descriptor, const timespec* times) {
    return interfere(SystemCall::futimens,
                     [=](size_t) { return __real_futimens(descriptor, times); });
}

int __real_utimensat(int folder, const char* path, const timespec* times, int flags);
int __wrap_utimensat(int folder, const char* path, const timespec* times, int flags) {
    return interfere(SystemCall::utimensat,
                     [=](size_t) { return __real_utimensat(folder, path, times, flags); });
}

ssize_t __real_flistxattr(int descriptor, char* list, size_t size);
ssize_t __wrap_flistxattr(int descriptor, char* list, size_t size) {
    return interfere(SystemCall::flistxattr,
                     [=](size_t) { return __real_flistxattr(descriptor, list, size); });
}

ssize_t __real_fgetxattr(int descriptor, const char* name, void* value, size_t size);
ssize_t __wrap_fgetxattr(int descriptor, const char* name, void* value, size_t size) {
    return interfere(SystemCall::fgetxattr,
                     [=](size_t) { return __real_fgetxattr(descriptor, name, value, size); });
}

int __real_fsetxattr(int descriptor, const char* name, const void* value, size_t size, int flags);
int __wrap_fsetxattr(int descriptor, const char* name, const void* value, size_t size, int flags) {
    return interfere(SystemCall::fsetxattr, [=](size_t) {
        return __real_fsetxattr(descriptor, name, value, size, flags);
    });
}

int __real_fremovexattr(int descriptor, const char* name);
int __wrap_fremovexattr(int descriptor, const char* name) {
    return interfere(SystemCall::fremovexattr,
                     [=](size_t) { return __real_fremovexattr(descriptor, name); });
}

ssize_t __real_llistxattr(const char* path, char* list, size_t size);
ssize_t __wrap_llistxattr(const char* path, char* list, size_t size) {
    return interfere(SystemCall::llistxattr,
                     [=](size_t) { return __real_llistxattr(path, list, size); });
}

ssize_t __real_lgetxattr(const char* path, const char* name, void* value, size_t size);
ssize_t __wrap_lgetxattr(const char* path, const char* name, void* value, size_t size) {
    return interfere(SystemCall::lgetxattr,
                     [=](size_t) { return __real_lgetxattr(path, name, value, size); });
}

int __real_lsetxattr(const char* path, const char* name, const void* value, size_t size, int flags);
int __wrap_lsetxattr(const char* path, const char* name, const void* value, size_t size,
                     int flags) {
    return interfere(SystemCall::lsetxattr,
                     [=](size_t) { return __real_lsetxattr(path, name, value, size, flags); });
}

} // extern "C"
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,cppcoreguidelines-pro-type-vararg)
