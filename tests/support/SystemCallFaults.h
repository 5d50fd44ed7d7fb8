#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace fennik::test {

/// The system calls that tests can interfere with, by the names that they have in C.
enum class SystemCall {
    open,
    openat,
    close,
    stat,
    lstat,
    fstat,
    fstatat,
    statx,
    fdopendir,
    readdir,
    readlinkat,
    mkdirat,
    mkfifoat,
    mknodat,
    symlinkat,
    linkat,
    unlinkat,
    renameat,
    renameat2,
    read,
    pread,
    write,
    pwrite,
    copy_file_range,
    ioctl,
    lseek,
    ftruncate,
    fallocate,
    fsync,
    fdatasync,
    syncfs,
    fchmod,
    fchmodat,
    fchown,
    fchownat,
    futimens,
    utimensat,
    flistxattr,
    fgetxattr,
    fsetxattr,
    fremovexattr,
    llistxattr,
    lgetxattr,
    lsetxattr,
};

/// What is to become of system calls.
struct Fault {
    std::vector<SystemCall> calls = {}; ///< that are concerned and counted; empty: all of them
    int number = 0;                     ///< of the call that is struck, from 1; 0: every one
    int errorCode = 0;                  ///< it fails so and is not made; 0: it is made
    bool endsProcess = false;           ///< at once, before the call, with `endedByFault`
    std::function<void()> before = {};  ///< done right before it; its own calls are let through
    std::optional<std::size_t> mostBytes = {}; ///< that it reads, writes or copies
};

/// The exit code of a process that a fault has ended.
constexpr int endedByFault = 137;

/// As long as it lives, the code of this executable meets the fault, on all threads. Several may
/// live at once; each of them counts every call. Works in executables that link
/// `fennik_fault_support`, and not for what libraries do inside themselves.
///
/// A close that fails has closed the file all the same, as on Linux.
class FaultInjection {
public:
    explicit FaultInjection(Fault fault);
    ~FaultInjection();
    FaultInjection(const FaultInjection&) = delete;
    FaultInjection& operator=(const FaultInjection&) = delete;

    /// How many of the calls concerned were made.
    int calls() const;
    /// Whether the call to be struck was reached.
    bool struck() const;

    class Injected;

private:
    std::shared_ptr<Injected> injected_;
};

/// A scenario that is run once for every call it makes.
struct Trial {
    std::function<void()> prepare = {}; ///< from scratch each time
    std::function<void()> act = {};     ///< meets the fault; in a child process where that ends it
    std::function<void()> check = {};   ///< told to hold whatever was struck
};

/// Runs the trial with the fault at its first call, at its second and so on, and once more past its
/// last call, unharmed. Returns how many calls were struck; tests expect a number, so that a
/// scenario that has lost its calls is noticed.
int forEachCall(Fault fault, const Trial& trial);

} // namespace fennik::test
