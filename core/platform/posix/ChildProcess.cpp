#include "core/platform/ChildProcess.h"

#include "core/platform/posix/Descriptor.h"
#include "core/platform/posix/PosixCalls.h"
#include "core/platform/posix/ProcessCalls.h"
#include "core/platform/posix/ProcessEnd.h"
#include "core/platform/posix/Spawning.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace fennik {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// Keeps the signal for a pipe without a reader from this thread, and takes it back where it came.
class WithoutPipeSignal {
public:
    WithoutPipeSignal() {
        sigemptyset(&signals_);
        sigaddset(&signals_, SIGPIPE);
        wasPending_ = isPending();
        pthread_sigmask(SIG_BLOCK, &signals_, &before_);
    }
    ~WithoutPipeSignal() {
        if (!wasPending_ && isPending()) {
            int taken = 0;
            sigwait(&signals_, &taken);
        }
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    WithoutPipeSignal(const WithoutPipeSignal&) = delete;
    WithoutPipeSignal& operator=(const WithoutPipeSignal&) = delete;

private:
    static bool isPending() {
        sigset_t pending;
        sigpending(&pending);
        return sigismember(&pending, SIGPIPE) == 1;
    }

    sigset_t signals_{};
    sigset_t before_{};
    bool wasPending_ = false;
};

} // namespace

struct ChildProcess::State {
    pid_t process = -1;
    std::unique_ptr<const Descriptor> input = {};
    std::unique_ptr<const Descriptor> output = {};
    std::optional<Ending> ending = {};

    ~State();
    void kill() const {
        // Until it was waited for, its number belongs to nobody else.
        if (!ending)
            ::kill(process, SIGKILL);
    }
    const std::optional<Ending>& wait(milliseconds patience);
};

const std::optional<ChildProcess::Ending>& ChildProcess::State::wait(milliseconds patience) {
    if (!ending)
        ending = awaitEnd(process, patience);
    return ending;
}

ChildProcess::State::~State() {
    constexpr milliseconds patience(200);
    kill();
    if (!wait(patience))
        awaitEndElsewhere(process);
}

ChildProcess::ChildProcess(std::unique_ptr<State> state) : state_(std::move(state)) {}
ChildProcess::ChildProcess(ChildProcess&& other) noexcept = default;
ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept = default;
ChildProcess::~ChildProcess() = default;

ChildProcess::Result<ChildProcess> ChildProcess::start(const Start& start) {
    auto input = Spawning::makePipe();
    if (!input)
        return std::unexpected(input.error());
    auto output = Spawning::makePipe();
    if (!output)
        return std::unexpected(output.error());
    widenPipe(output->writing->number());
    if (fcntl(input->writing->number(), F_SETFL, O_NONBLOCK) != 0)
        return lastError();
    const auto process = Spawning::spawn({.program = start.program,
                                          .arguments = start.arguments,
                                          .environment = start.environment,
                                          .input = input->reading->number(),
                                          .output = output->writing->number(),
                                          .given = start.descriptor});
    if (!process)
        return std::unexpected(process.error());
    auto state = std::make_unique<State>();
    state->process = *process;
    state->input = std::move(input->writing);
    state->output = std::move(output->reading);
    return ChildProcess(std::move(state));
}

ChildProcess::Result<std::size_t> ChildProcess::write(std::span<const std::byte> bytes,
                                                      milliseconds patience) {
    if (!state_->input)
        return std::unexpected(PosixError{EPIPE});
    const int descriptor = state_->input->number();
    if (const auto ready = Spawning::waitUntilReady(descriptor, POLLOUT, patience); !ready)
        return std::unexpected(ready.error());
    const WithoutPipeSignal quiet;
    const auto written = retried([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
    if (written < 0)
        return lastError();
    return static_cast<std::size_t>(written);
}

void ChildProcess::closeInput() {
    state_->input.reset();
}

ChildProcess::Result<std::size_t> ChildProcess::read(std::span<std::byte> bytes,
                                                     milliseconds patience) {
    const int descriptor = state_->output->number();
    if (const auto ready = Spawning::waitUntilReady(descriptor, POLLIN, patience); !ready)
        return std::unexpected(ready.error());
    const auto count = retried([&] { return ::read(descriptor, bytes.data(), bytes.size()); });
    if (count < 0)
        return lastError();
    return static_cast<std::size_t>(count);
}

void ChildProcess::kill() {
    state_->kill();
}

std::optional<ChildProcess::Ending> ChildProcess::wait(milliseconds patience) {
    return state_->wait(patience);
}

} // namespace fennik
