#include "core/platform/CommandProcess.h"

#include "core/platform/posix/PosixCalls.h"
#include "core/platform/posix/ProcessCalls.h"
#include "core/platform/posix/Spawning.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace fennik {

namespace {

constexpr int signalledCode = 128;

using Failure = CommandProcess::Failure;

std::unexpected<Failure> failed(Failure::What what, PosixError error) {
    return std::unexpected(Failure{what, error});
}

bool setNonBlocking(const Descriptor& descriptor) {
    return fcntl(descriptor.number(), F_SETFL, O_NONBLOCK) == 0;
}

void writeByte(int descriptor) {
    const std::byte byte{};
    retried([&] { return ::write(descriptor, &byte, 1); }); // a full pipe wakes as well
}

} // namespace

struct CommandProcess::State {
    pid_t process = -1;
    std::unique_ptr<const Descriptor> output = {}; ///< none: it has ended
    /// Shared with the thread that waits for the end: it may come late, and would be ended by the
    /// signal for a pipe that nobody reads.
    std::shared_ptr<const Spawning::Pipe> waking = {};

    State() = default;
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State();
    /// Nobody else gets the number of the group as long as its leader was not waited for, even
    /// when the leader has ended: that is why this waits at the very end only.
    void signal(int number) const { ::kill(-process, number); }
    bool watchEnd() const;
};

/// A thread waits for the end, because nothing else of the standard wakes whoever waits for output.
bool CommandProcess::State::watchEnd() const {
    try {
        std::thread([process = process, waking = waking] {
            siginfo_t ending{};
            retried([&] {
                return waitid(P_PID, static_cast<id_t>(process), &ending, WEXITED | WNOWAIT);
            });
            writeByte(waking->writing->number());
        }).detach();
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

CommandProcess::State::~State() {
    if (process < 0)
        return;
    signal(SIGKILL);
    if (retried([&] { return waitpid(process, nullptr, WNOHANG); }) != 0)
        return;
    const auto wait = [process = process] {
        retried([process] { return waitpid(process, nullptr, 0); });
    };
    try {
        std::thread(wait).detach(); // one that is stuck in a dead disk takes its time
    } catch (const std::system_error&) {
        wait();
    }
}

CommandProcess::CommandProcess(std::unique_ptr<State> state) : state_(std::move(state)) {}
CommandProcess::CommandProcess(CommandProcess&& other) noexcept = default;
CommandProcess& CommandProcess::operator=(CommandProcess&& other) noexcept = default;
CommandProcess::~CommandProcess() = default;

std::expected<CommandProcess, Failure> CommandProcess::start(const Start& start) {
    const Descriptor folder(
        retried([&] { return open(start.folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    // One that may be entered, but not listed, is entered by its path alone.
    if (folder.number() < 0 && (errno != EACCES || access(start.folder.c_str(), X_OK) != 0))
        return failed(Failure::What::folder, PosixError{errno});
    auto output = Spawning::makePipe();
    auto waking = Spawning::makePipe();
    if (!output || !waking)
        return failed(Failure::What::program, (output ? waking : output).error());
    if (!setNonBlocking(*output->reading) || !setNonBlocking(*waking->reading) ||
        !setNonBlocking(*waking->writing))
        return failed(Failure::What::program, PosixError{errno});

    const auto process = Spawning::spawn({.program = start.program,
                                          .arguments = start.arguments,
                                          .output = output->writing->number(),
                                          .error = output->writing->number(),
                                          .folder = folder.number(),
                                          .leaves = Spawning::Plan::Leaves::terminal});
    if (!process) {
        const bool isFolder = folder.number() >= 0 && process.error().code == EACCES &&
                              access(start.folder.c_str(), X_OK) != 0;
        return failed(isFolder ? Failure::What::folder : Failure::What::program, process.error());
    }
    auto state = std::make_unique<State>();
    state->process = *process;
    state->output = std::move(output->reading);
    state->waking = std::make_shared<const Spawning::Pipe>(std::move(*waking));
    if (!state->watchEnd())
        return failed(Failure::What::program, PosixError{EAGAIN});
    return CommandProcess(std::move(state));
}

void CommandProcess::await(Watched watched,
                           std::optional<std::chrono::milliseconds> patience) const {
    std::array<pollfd, 2> waited{
        {{.fd = state_->waking->reading->number(), .events = POLLIN, .revents = 0},
         {.fd = -1, .events = POLLIN, .revents = 0}}};
    if (watched == Watched::output && state_->output)
        waited[1].fd = state_->output->number();
    // A signal that comes meanwhile is a reason to look around as well.
    if (poll(waited.data(), waited.size(), patience ? static_cast<int>(patience->count()) : -1) <=
        0)
        return;
    std::array<std::byte, 64> bytes{};
    while (retried([&] { return ::read(waited[0].fd, bytes.data(), bytes.size()); }) > 0) {
    }
}

std::size_t CommandProcess::read(std::span<std::byte> bytes) {
    if (!state_->output)
        return 0;
    const auto count =
        retried([&] { return ::read(state_->output->number(), bytes.data(), bytes.size()); });
    if (count == 0 || (count < 0 && errno != EAGAIN))
        state_->output.reset();
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

bool CommandProcess::outputHasEnded() const {
    return state_->output == nullptr;
}

std::optional<int> CommandProcess::exitCode() const {
    siginfo_t ending{};
    const int waited = retried([&] {
        return waitid(P_PID, static_cast<id_t>(state_->process), &ending,
                      WEXITED | WNOWAIT | WNOHANG);
    });
    if (waited != 0 || ending.si_pid == 0)
        return std::nullopt;
    return ending.si_code == CLD_EXITED ? ending.si_status : signalledCode + ending.si_status;
}

bool CommandProcess::isOver() const {
    return outputHasEnded() && exitCode() && isAloneInGroup(state_->process);
}

void CommandProcess::wake() const {
    writeByte(state_->waking->writing->number());
}

void CommandProcess::terminate() const {
    state_->signal(SIGTERM);
    state_->signal(SIGCONT); // one that was stopped would never notice
}

void CommandProcess::kill() const {
    state_->signal(SIGKILL);
}

} // namespace fennik
