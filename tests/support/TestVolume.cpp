#include "tests/support/TestVolume.h"

#include "core/base/PosixError.h"
#include "tests/support/DiskTree.h"
#include "tests/support/TempFolder.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sched.h>
#include <spawn.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace fennik::test {

namespace {

using Done = std::expected<void, std::string>;

/// Why this process cannot have mounts that only it sees; empty where it can.
std::string obstacleToMounts() {
    if (geteuid() != 0)
        return "only root can mount volumes";
    if (unshare(CLONE_NEWNS) != 0)
        return "this system lets no process have mounts of its own: " + PosixError{errno}.reason();
    if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        return "mounts cannot be made private";
    return {};
}

/// Starts a program whose output goes to the file `log`. The error says what is missing.
std::expected<pid_t, std::string> started(std::vector<std::string> command,
                                          const std::string& log) {
    std::vector<char*> arguments;
    for (auto& argument : command)
        arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_adddup2(&actions, 1, 2);
    pid_t child = 0;
    const int error =
        posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        return std::unexpected(command[0] + " cannot be started");
    return child;
}

/// By the kernel's table, because a folder bound to a second place has the same device there.
bool isMountedAt(const std::string& path) {
    return contentOf("/proc/thread-self/mountinfo").contains(" " + path + " ");
}

} // namespace

/// A place, and what is mounted there.
class TestVolume::Mount {
public:
    Mount() { temp_.folder("volume"); }
    Mount(const Mount&) = delete;
    Mount& operator=(const Mount&) = delete;
    ~Mount() {
        if (isMountedAt(path_) && umount(path_.c_str()) != 0) {
            umount2(path_.c_str(), MNT_DETACH); // in use, so its server would stay
            if (server_)
                kill(*server_, SIGKILL);
        }
        if (server_)
            waitpid(*server_, nullptr, 0);
    }

    const std::string& path() const { return path_; }

    Done run(std::vector<std::string> command) const {
        const auto name = command[0];
        const auto child = started(std::move(command), temp_.path("log"));
        if (!child)
            return std::unexpected(child.error());
        int status = 0;
        if (waitpid(*child, &status, 0) == *child && WIFEXITED(status) && WEXITSTATUS(status) == 0)
            return {};
        return std::unexpected(name + " failed: " + contentOf(temp_.path("log")));
    }

    /// A disk of its own, formatted by the command, which is told the image of the disk.
    Done format(std::uintmax_t megabytes, std::vector<std::string> command) const {
        temp_.file("image");
        std::filesystem::resize_file(image(), megabytes << 20U);
        command.push_back(image());
        return run(std::move(command));
    }

    Done mountDisk() const { return run({"mount", "-o", "loop", image(), path_}); }

    /// The command is told the image of the disk and the place.
    Done serveDisk(std::vector<std::string> command) {
        // A crash of the test must not leave the process, and with it the volume.
        command.insert(command.begin(), {"setpriv", "--pdeathsig", "KILL"});
        command.insert(command.end(), {image(), path_});
        const auto child = started(std::move(command), temp_.path("log"));
        if (!child)
            return std::unexpected(child.error());
        while (!isMountedAt(path_)) {
            if (waitpid(*child, nullptr, WNOHANG) != 0)
                return std::unexpected("no mount: " + contentOf(temp_.path("log")));
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        server_ = *child;
        return {};
    }

private:
    std::string image() const { return temp_.path("image"); }

    TempFolder temp_;
    const std::string path_ = temp_.path("volume");
    std::optional<pid_t> server_;
};

TestVolume::Made TestVolume::memory(const std::string& size, int inodes) {
    return madeBy([&size, inodes](Mount& mount) {
        const auto options = "size=" + size + ",nr_inodes=" + std::to_string(inodes);
        return mount.run({"mount", "-t", "tmpfs", "-o", options, "tmpfs", mount.path()});
    });
}

TestVolume::Made TestVolume::ext4() {
    return madeBy([](Mount& mount) {
        const auto formatted = mount.format(32, {"mkfs.ext4", "-q", "-F"});
        return formatted ? mount.mountDisk() : formatted;
    });
}

TestVolume::Made TestVolume::btrfs() {
    return madeBy([](Mount& mount) {
        const auto formatted = mount.format(128, {"mkfs.btrfs", "-q", "-f"});
        return formatted ? mount.mountDisk() : formatted;
    });
}

TestVolume::Made TestVolume::withoutExclusiveRename(LetterCase letterCase) {
    return madeBy([letterCase](Mount& mount) -> Done {
        const std::string option =
            letterCase == LetterCase::ignored ? "no_detach,ignore_case" : "no_detach";
        if (auto formatted = mount.format(16, {"mkfs.ntfs", "-q", "-Q", "-F"}); !formatted)
            return formatted;
        return mount.serveDisk({"lowntfs-3g", "-o", option});
    });
}

TestVolume::Made TestVolume::boundTo(const std::string& folder) {
    return madeBy(
        [&folder](Mount& mount) { return mount.run({"mount", "--bind", folder, mount.path()}); });
}

const std::string& TestVolume::path() const {
    return mount_->path();
}

std::expected<void, std::string> TestVolume::makeReadOnly() const {
    return mount_->run({"mount", "-o", "remount,ro", mount_->path()});
}

TestVolume::TestVolume(TestVolume&&) noexcept = default;
TestVolume& TestVolume::operator=(TestVolume&&) noexcept = default;
TestVolume::~TestVolume() = default;

TestVolume::TestVolume(std::unique_ptr<Mount> mount) : mount_(std::move(mount)) {}

TestVolume::Made TestVolume::madeBy(const Steps& steps) {
    static const std::string obstacle = obstacleToMounts();
    if (!obstacle.empty())
        return std::unexpected(obstacle);
    auto mount = std::make_unique<Mount>();
    if (auto done = steps(*mount); !done)
        return std::unexpected(done.error());
    return TestVolume(std::move(mount));
}

} // namespace fennik::test
