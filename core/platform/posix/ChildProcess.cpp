#include "core/platform/ChildProcess.h"

#include "core/platform/posix/Descriptor.h"
#include "core/platform/posix/PosixCalls.h"
#include "core/platform/posix/ProcessCalls.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

// The variables of this process; no header of the system declares them everywhere.
extern char** environ; // NOLINT(readability-redundant-declaration)

namespace fennik {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr int givenDescriptor = 3;
/// Below are the numbers that the child has itself. A pipe there would be covered by another one.
constexpr int firstFreeDescriptor = givenDescriptor + 1;

/// The two ends of a pipe. No process that is started meanwhile inherits them.
struct Pipe {
    std::unique_ptr<const Descriptor> reading = {};
    std::unique_ptr<const Descriptor> writing = {};
};

ChildProcess::Result<std::unique_ptr<const Descriptor>> raised(int number) {
    auto low = std::make_unique<const Descriptor>(number);
    if (number >= firstFreeDescriptor)
        return low;
    const int high = fcntl(number, F_DUPFD_CLOEXEC, firstFreeDescriptor);
    if (high < 0)
        return lastError();
    return std::make_unique<const Descriptor>(high);
}

ChildProcess::Result<Pipe> makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return lastError();
    auto reading = raised(ends[0]);
    auto writing = raised(ends[1]);
    if (!reading)
        return std::unexpected(reading.error());
    if (!writing)
        return std::unexpected(writing.error());
    return Pipe{.reading = std::move(*reading), .writing = std::move(*writing)};
}

/// What posix_spawn does in the child before the program begins.
class SpawnSettings {
public:
    SpawnSettings() {
        posix_spawn_file_actions_init(&actions);
        posix_spawnattr_init(&attributes);
    }
    ~SpawnSettings() {
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&actions);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    /// An errno value.
    int arrange(int input, int output, int given) {
        // What is given comes first, as its number may be one of those that are taken next.
        int error = 0;
        const auto then = [&error](int result) { error = error != 0 ? error : result; };
        if (given >= 0)
            then(posix_spawn_file_actions_adddup2(&actions, given, givenDescriptor));
        then(posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO));
        then(posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO));
        then(posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0));
        then(closeFrom(actions, given >= 0 ? firstFreeDescriptor : givenDescriptor));
        // Neither what this process ignores or holds back, nor the keys of its terminal.
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        then(posix_spawnattr_setsigmask(&attributes, &none));
        then(posix_spawnattr_setsigdefault(&attributes, &all));
        then(posix_spawnattr_setpgroup(&attributes, 0));
        then(posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                       POSIX_SPAWN_SETPGROUP));
        return error;
    }

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

std::vector<std::string>
environmentWith(const std::vector<std::pair<std::string, std::string>>& variables) {
    std::vector<std::string> all;
    for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
        const std::string_view text(*variable);
        const auto name = text.substr(0, text.find('='));
        if (std::ranges::none_of(variables, [&](const auto& own) { return own.first == name; }))
            all.emplace_back(text);
    }
    for (const auto& [name, value] : variables)
        all.emplace_back(name).append("=").append(value);
    return all;
}

/// As the system wants them: pointers into `texts` with none at the end.
std::vector<char*> pointersInto(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (auto& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// Whether the descriptor is ready, or its other end gone, before the patience ends.
ChildProcess::Result<void> waitUntilReady(int descriptor, short events, milliseconds patience) {
    const auto end = steady_clock::now() + patience;
    while (true) {
        pollfd waited{.fd = descriptor, .events = events, .revents = 0};
        const auto left = std::chrono::ceil<milliseconds>(end - steady_clock::now());
        const int ready =
            poll(&waited, 1, static_cast<int>(std::max(left, milliseconds(0)).count()));
        if (ready > 0)
            return {};
        if (ready == 0)
            return std::unexpected(PosixError{EAGAIN});
        if (errno != EINTR)
            return lastError();
    }
}

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

ChildProcess::Ending endingOf(int status) {
    if (WIFEXITED(status))
        return {.exitCode = WEXITSTATUS(status)};
    return {.signal = WTERMSIG(status)};
}

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
    const auto end = steady_clock::now() + patience;
    auto pause = std::chrono::microseconds(100);
    while (!ending) {
        int status = 0;
        const pid_t ended = retried([&] { return waitpid(process, &status, WNOHANG); });
        if (ended == process) {
            ending = endingOf(status);
        } else if (ended < 0) {
            ending = Ending{}; // somebody else has waited for it
        } else {
            if (steady_clock::now() >= end)
                break;
            std::this_thread::sleep_for(pause);
            pause = std::min(2 * pause, std::chrono::microseconds(10'000));
        }
    }
    return ending;
}

ChildProcess::State::~State() {
    constexpr milliseconds patience(200);
    kill();
    if (!wait(patience))
        std::thread([process = process] {
            retried([process] { return waitpid(process, nullptr, 0); });
        }).detach();
}

ChildProcess::ChildProcess(std::unique_ptr<State> state) : state_(std::move(state)) {}
ChildProcess::ChildProcess(ChildProcess&& other) noexcept = default;
ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept = default;
ChildProcess::~ChildProcess() = default;

ChildProcess::Result<ChildProcess> ChildProcess::start(const Start& start) {
    auto input = makePipe();
    if (!input)
        return std::unexpected(input.error());
    auto output = makePipe();
    if (!output)
        return std::unexpected(output.error());
    widenPipe(output->writing->number());
    if (fcntl(input->writing->number(), F_SETFL, O_NONBLOCK) != 0)
        return lastError();

    SpawnSettings settings;
    if (const int error =
            settings.arrange(input->reading->number(), output->writing->number(), start.descriptor))
        return std::unexpected(PosixError{error});
    std::vector<std::string> arguments{start.program};
    arguments.insert(arguments.end(), start.arguments.begin(), start.arguments.end());
    auto environment = environmentWith(start.environment);
    auto state = std::make_unique<State>();
    if (const int error = posix_spawn(&state->process, start.program.c_str(), &settings.actions,
                                      &settings.attributes, pointersInto(arguments).data(),
                                      pointersInto(environment).data())) {
        state->ending = Ending{}; // there is nothing to end
        return std::unexpected(PosixError{error});
    }
    state->input = std::move(input->writing);
    state->output = std::move(output->reading);
    return ChildProcess(std::move(state));
}

ChildProcess::Result<std::size_t> ChildProcess::write(std::span<const std::byte> bytes,
                                                      milliseconds patience) {
    if (!state_->input)
        return std::unexpected(PosixError{EPIPE});
    const int descriptor = state_->input->number();
    if (const auto ready = waitUntilReady(descriptor, POLLOUT, patience); !ready)
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
    if (const auto ready = waitUntilReady(descriptor, POLLIN, patience); !ready)
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
