#include "app/model/CommandRunner.h"

#include "core/base/TerminalText.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <span>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

namespace fennik::app {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using Watched = CommandProcess::Watched;

/// Between two times that output is shown.
constexpr milliseconds pace(50);
/// For a command that was asked to end.
constexpr milliseconds grace(800);
/// Of output that is read before the last one was shown.
constexpr std::size_t mostBytesAhead = std::size_t(1) << 20;
constexpr std::size_t blockSize = std::size_t(64) << 10;

} // namespace

/// What the thread has in common with the main thread.
struct CommandRunner::Shared : std::enable_shared_from_this<Shared> {
    Shared(Executor& mainThread, Listeners told) : main(mainThread), listeners(std::move(told)) {}

    void run(const CommandProcess::Start& start);
    void follow();
    void read();
    void tellOutput();
    void tellEnd();
    void end();
    /// Runs `task` on the main thread, unless nothing is told any more by then.
    template <class Tell>
    void tell(Tell task);

    Executor& main;
    Listeners listeners; ///< main thread only

    // Of the thread alone.
    TerminalText text;
    CommandOutput output; ///< not yet told
    bool hasOutput = false;
    std::size_t bytesAhead = 0;
    bool endIsTold = false;
    steady_clock::time_point shown; ///< when output was last
    bool wasShown = true;

    mutable std::mutex lock; ///< guards what follows
    std::condition_variable over;
    std::optional<CommandProcess> process; ///< while it is held
    bool isMute = false;
    bool isOver = false;
    bool isShown = true;                             ///< what was told last
    std::optional<steady_clock::time_point> killing; ///< since it was asked to end
};

template <class Tell>
void CommandRunner::Shared::tell(Tell task) {
    const std::lock_guard guard(lock);
    if (isMute)
        return;
    // With the lock held, so that the main thread's executor is still there.
    main.execute([shared = shared_from_this(), task = std::move(task)]() mutable {
        {
            const std::lock_guard innerGuard(shared->lock);
            if (shared->isMute)
                return;
        }
        task(*shared);
    });
}

void CommandRunner::Shared::run(const CommandProcess::Start& start) {
    auto started = CommandProcess::start(start);
    if (!started) {
        tell([failure = started.error()](Shared& shared) { shared.listeners.failed(failure); });
    } else {
        {
            const std::lock_guard guard(lock);
            process = std::move(*started);
            if (killing)
                process->terminate();
        }
        follow();
    }
    const std::lock_guard guard(lock);
    process.reset();
    isOver = true;
    over.notify_all();
}

void CommandRunner::Shared::follow() {
    while (true) {
        std::optional<steady_clock::time_point> killsAt;
        bool isMuted = false;
        {
            const std::lock_guard guard(lock);
            killsAt = killing;
            isMuted = isMute;
            if (isShown && !std::exchange(wasShown, true))
                shown = steady_clock::now();
        }
        if (isMuted) {
            wasShown = true;
            bytesAhead = 0;
        }
        const auto now = steady_clock::now();
        const bool isKilled = killsAt && now >= *killsAt;
        if (isKilled)
            process->kill();
        const bool mayTell = wasShown && now >= shown + pace;
        if (hasOutput && mayTell)
            tellOutput();
        if (!endIsTold && process->exitCode())
            tellEnd();

        if (endIsTold && (isKilled || (!hasOutput && process->isOver())))
            return;

        // One that was asked to end is looked after: nothing tells when all of it has.
        std::optional<steady_clock::time_point> until;
        if (killsAt)
            until = isKilled ? now + pace : std::min(*killsAt, now + pace);
        if (hasOutput && wasShown)
            until = until ? std::min(*until, shown + pace) : shown + pace;
        std::optional<milliseconds> patience;
        if (until)
            patience = std::max(std::chrono::ceil<milliseconds>(*until - now), milliseconds(0));
        process->await(bytesAhead < mostBytesAhead ? Watched::output : Watched::endOnly, patience);
        if (bytesAhead < mostBytesAhead)
            read();
    }
}

void CommandRunner::Shared::read() {
    std::array<char, blockSize> bytes{};
    const auto count = process->read(std::as_writable_bytes(std::span(bytes)));
    if (count == 0) {
        hasOutput |= process->outputHasEnded() && text.finish();
        return;
    }
    bytesAhead += count;
    for (auto& line : text.take({bytes.data(), count}))
        output.endLine(std::move(line));
    hasOutput = true;
}

void CommandRunner::Shared::tellOutput() {
    output.setLast(text.line());
    hasOutput = false;
    bytesAhead = 0;
    wasShown = false;
    {
        const std::lock_guard guard(lock);
        isShown = false;
    }
    tell([written = std::exchange(output, {})](Shared& shared) mutable {
        shared.listeners.wrote(std::move(written));
        const std::lock_guard guard(shared.lock);
        shared.isShown = true;
        if (shared.process)
            shared.process->wake();
    });
}

void CommandRunner::Shared::tellEnd() {
    // What it has written until now comes first. What it has left running may write on and on.
    constexpr std::size_t mostBytesOfPipe = std::size_t(1) << 20;
    bytesAhead = 0;
    std::size_t before = 0;
    do {
        before = bytesAhead;
        read();
    } while (bytesAhead > before && bytesAhead < mostBytesOfPipe);
    if (hasOutput)
        tellOutput();
    endIsTold = true;
    tell([code = *process->exitCode()](Shared& shared) { shared.listeners.ended(code); });
}

void CommandRunner::Shared::end() {
    const std::lock_guard guard(lock);
    if (killing)
        return;
    killing = steady_clock::now() + grace;
    if (process) {
        process->terminate();
        process->wake();
    }
}

CommandRunner::CommandRunner(CommandProcess::Start start, Executor& main, Listeners listeners)
    : shared_(std::make_shared<Shared>(main, std::move(listeners))) {
    try {
        std::thread([shared = shared_, start = std::move(start)] { shared->run(start); }).detach();
    } catch (const std::system_error&) {
        shared_->isOver = true;
        shared_->tell([](Shared& shared) {
            shared.listeners.failed({CommandProcess::Failure::What::program, PosixError{EAGAIN}});
        });
    }
}

CommandRunner::~CommandRunner() {
    mute();
    const std::lock_guard guard(shared_->lock);
    shared_->killing = steady_clock::now();
    if (shared_->process) {
        shared_->process->kill();
        shared_->process->wake();
    }
}

void CommandRunner::mute() {
    const std::lock_guard guard(shared_->lock);
    shared_->isMute = true;
    if (shared_->process)
        shared_->process->wake();
}

void CommandRunner::end() {
    shared_->end();
}

bool CommandRunner::isOver() const {
    const std::lock_guard guard(shared_->lock);
    return shared_->isOver;
}

bool CommandRunner::endBefore(steady_clock::time_point deadline) {
    end();
    std::unique_lock guard(shared_->lock);
    return shared_->over.wait_until(guard, deadline, [this] { return shared_->isOver; });
}

} // namespace fennik::app
