#include "core/platform/posix/Spawning.h"

#include "core/platform/posix/PosixCalls.h"
#include "core/platform/posix/ProcessCalls.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <string_view>
#include <unistd.h>

// The variables of this process; no header of the system declares them everywhere.
extern char** environ; // NOLINT(readability-redundant-declaration)

namespace fennik::Spawning {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr int givenDescriptor = 3;
/// Below are the numbers that the child has itself. A pipe there would be covered by another one.
constexpr int firstFreeDescriptor = givenDescriptor + 1;

Result<std::unique_ptr<const Descriptor>> raised(int number) {
    auto low = std::make_unique<const Descriptor>(number);
    if (number >= firstFreeDescriptor)
        return low;
    const int high = fcntl(number, F_DUPFD_CLOEXEC, firstFreeDescriptor);
    if (high < 0)
        return lastError();
    return std::make_unique<const Descriptor>(high);
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
    int arrange(const Plan& plan) {
        // What is given comes first, as its number may be one of those that are taken next.
        int error = 0;
        const auto then = [&error](int result) { error = error != 0 ? error : result; };
        const auto use = [&](int number, int as, int mode) {
            then(number >= 0
                     ? posix_spawn_file_actions_adddup2(&actions, number, as)
                     : posix_spawn_file_actions_addopen(&actions, as, "/dev/null", mode, 0));
        };
        if (plan.folder >= 0)
            then(posix_spawn_file_actions_addfchdir_np(&actions, plan.folder));
        if (plan.given >= 0)
            use(plan.given, givenDescriptor, O_RDONLY);
        use(plan.input, STDIN_FILENO, O_RDONLY);
        use(plan.output, STDOUT_FILENO, O_WRONLY);
        use(plan.error, STDERR_FILENO, O_WRONLY);
        then(closeFrom(actions, plan.given >= 0 ? firstFreeDescriptor : givenDescriptor));
        // Neither what this process ignores or holds back, nor the keys of its terminal.
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        then(posix_spawnattr_setsigmask(&attributes, &none));
        then(posix_spawnattr_setsigdefault(&attributes, &all));
        then(posix_spawnattr_setpgroup(&attributes, 0));
        const int leaving =
            plan.leaves == Plan::Leaves::group ? POSIX_SPAWN_SETPGROUP : POSIX_SPAWN_SETSID;
        then(posix_spawnattr_setflags(
            &attributes,
            static_cast<short>(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | leaving)));
        return error;
    }

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

std::vector<std::string>
environmentWith(const std::vector<std::pair<std::string, std::string>>& variables) {
    // With these a launcher has told this process, and nobody else, which click has started it.
    constexpr std::array<std::string_view, 2> launch{"DESKTOP_STARTUP_ID", "XDG_ACTIVATION_TOKEN"};
    std::vector<std::string> all;
    for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
        const std::string_view text(*variable);
        const auto name = text.substr(0, text.find('='));
        const bool isOwn =
            std::ranges::find(launch, name) != launch.end() ||
            std::ranges::any_of(variables, [&](const auto& own) { return own.first == name; });
        if (!isOwn)
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

} // namespace

Result<Pipe> makePipe() {
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

Result<pid_t> spawn(const Plan& plan) {
    SpawnSettings settings;
    if (const int error = settings.arrange(plan))
        return std::unexpected(PosixError{error});
    std::vector<std::string> arguments{plan.program};
    arguments.insert(arguments.end(), plan.arguments.begin(), plan.arguments.end());
    auto environment = environmentWith(plan.environment);
    pid_t process = -1;
    if (const int error =
            posix_spawn(&process, plan.program.c_str(), &settings.actions, &settings.attributes,
                        pointersInto(arguments).data(), pointersInto(environment).data()))
        return std::unexpected(PosixError{error});
    return process;
}

Result<void> waitUntilReady(int descriptor, short events, milliseconds patience) {
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

} // namespace fennik::Spawning
