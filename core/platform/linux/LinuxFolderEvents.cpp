#include "core/platform/FolderEvents.h"

#include "core/platform/posix/Descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <list>
#include <mutex>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace fennik {

namespace {

using SteadyClock = std::chrono::steady_clock;
using TimePoint = SteadyClock::time_point;
using namespace std::chrono_literals;

constexpr auto never = TimePoint::max();
constexpr auto gatherTime = 10ms;
constexpr auto betweenCalls = 250ms;
constexpr std::uint32_t wantedEvents = IN_CREATE | IN_DELETE | IN_MOVE | IN_MODIFY | IN_ATTRIB |
                                       IN_CLOSE_WRITE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR |
                                       IN_EXCL_UNLINK;

/// One watch as the thread of the events sees it.
struct Listener {
    int number = 0; ///< the kernel's number of the folder, one for all listeners of that folder
    std::shared_ptr<const std::function<void()>> changed;
    TimePoint due = never; ///< when a change is to be told
    TimePoint mayBeToldAt = TimePoint::min();
};

/// Shared with the thread, which is detached: giving up the kernel's watch may wait for a disk, and
/// then nobody may wait for the thread.
struct State {
    Descriptor events{inotify_init1(IN_NONBLOCK | IN_CLOEXEC)};
    Descriptor alarm{eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)};

    std::mutex mutex; // guards all below
    std::condition_variable callEnded;
    std::list<Listener> listeners;
    std::vector<int> abandoned; ///< numbers whose last listener has gone
    int additions = 0;          ///< under way
    /// Numbers that became invalid since additions are under way. The kernel does not give a number
    /// out again before it has used all others.
    std::vector<int> invalidated;
    bool calling = false;
    bool stopping = false;

    void wake() const {
        const std::uint64_t one = 1;
        // It can fail only when the alarm has long been raised.
        [[maybe_unused]] const auto written = write(alarm.number(), &one, sizeof one);
    }

    bool hasListener(int number) const {
        return std::ranges::find(listeners, number, &Listener::number) != listeners.end();
    }
};

/// The thread of the events.
class Teller {
public:
    explicit Teller(std::shared_ptr<State> state) : state_(std::move(state)) {}

    void run() {
        while (waitForWork()) {
            giveUpAbandoned();
            if (SteadyClock::now() >= readAgainAt_)
                readEvents();
            tell();
        }
    }

private:
    /// False when it is time to end.
    bool waitForWork() {
        const auto now = SteadyClock::now();
        const bool isPausing = now < readAgainAt_;
        auto next = isPausing ? readAgainAt_ : never;
        {
            const std::lock_guard lock(state_->mutex);
            if (state_->stopping)
                return false;
            for (const auto& listener : state_->listeners)
                next = std::min(next, listener.due);
        }
        int patience = -1;
        if (next != never) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(next - now);
            patience = static_cast<int>(std::max(left, 0ms).count());
        }
        // A stream of changes is looked at in intervals only, so that it stays cheap.
        std::array<pollfd, 2> sources{{{state_->alarm.number(), POLLIN, 0},
                                       {isPausing ? -1 : state_->events.number(), POLLIN, 0}}};
        poll(sources.data(), sources.size(), patience);
        if (sources[0].revents != 0) {
            std::uint64_t count = 0;
            [[maybe_unused]] const auto drained =
                read(state_->alarm.number(), &count, sizeof count);
        }
        return true;
    }

    void giveUpAbandoned() {
        std::vector<int> numbers;
        {
            const std::lock_guard lock(state_->mutex);
            numbers.swap(state_->abandoned);
            // Meanwhile somebody may have come to watch the same folder.
            std::erase_if(numbers, [this](int number) { return state_->hasListener(number); });
        }
        // Should somebody come at this very moment, the event of invalidation sees to them.
        for (const int number : numbers)
            inotify_rm_watch(state_->events.number(), number);
    }

    void readEvents() {
        for (;;) {
            const auto length = read(state_->events.number(), buffer_.data(), buffer_.size());
            if (length < 0 && errno == EINTR)
                continue;
            if (length <= 0)
                return;
            const auto now = SteadyClock::now();
            readAgainAt_ = now + gatherTime;
            const std::lock_guard lock(state_->mutex);
            for (std::size_t position = 0; position < static_cast<std::size_t>(length);) {
                inotify_event event{};
                std::memcpy(&event, buffer_.data() + position, sizeof event);
                position += sizeof event + event.len;
                take(event, now);
            }
        }
    }

    void take(const inotify_event& event, TimePoint now) {
        const bool concernsAll = (event.mask & IN_Q_OVERFLOW) != 0;
        for (auto& listener : state_->listeners) {
            if (listener.due == never && (concernsAll || listener.number == event.wd))
                listener.due = std::max(now + gatherTime, listener.mayBeToldAt);
        }
        if ((event.mask & IN_IGNORED) != 0 && state_->additions > 0)
            state_->invalidated.push_back(event.wd);
    }

    void tell() {
        std::vector<std::shared_ptr<const std::function<void()>>> calls;
        const auto now = SteadyClock::now();
        {
            const std::lock_guard lock(state_->mutex);
            for (auto& listener : state_->listeners) {
                if (listener.due > now)
                    continue;
                listener.due = never;
                listener.mayBeToldAt = now + betweenCalls;
                calls.push_back(listener.changed);
            }
        }
        for (const auto& changed : calls)
            callUnlessGone(changed);
    }

    void callUnlessGone(const std::shared_ptr<const std::function<void()>>& changed) {
        {
            const std::lock_guard lock(state_->mutex);
            const bool isGone = std::ranges::find(state_->listeners, changed, &Listener::changed) ==
                                state_->listeners.end();
            if (state_->stopping || isGone)
                return;
            state_->calling = true;
        }
        (*changed)();
        const std::lock_guard lock(state_->mutex);
        state_->calling = false;
        state_->callEnded.notify_all();
    }

    std::shared_ptr<State> state_;
    std::vector<char> buffer_ = std::vector<char>(64UL * 1024);
    TimePoint readAgainAt_ = TimePoint::min();
};

class LinuxWatch final : public FolderEvents::Watch {
public:
    LinuxWatch(std::weak_ptr<State> state, std::list<Listener>::iterator listener)
        : state_(std::move(state)), listener_(listener) {}

    ~LinuxWatch() override {
        const auto state = state_.lock();
        if (!state)
            return;
        const std::lock_guard lock(state->mutex);
        const int number = listener_->number;
        state->listeners.erase(listener_);
        if (state->hasListener(number))
            return;
        state->abandoned.push_back(number);
        state->wake();
    }

private:
    std::weak_ptr<State> state_;
    std::list<Listener>::iterator listener_;
};

class LinuxFolderEvents final : public FolderEvents {
public:
    LinuxFolderEvents() {
        if (state_->events.number() < 0 || state_->alarm.number() < 0)
            return;
        try {
            std::thread([state = state_] { Teller(state).run(); }).detach();
            works_ = true;
        } catch (const std::system_error&) {
            // Without a thread there is nobody to tell anything.
            return;
        }
    }

    ~LinuxFolderEvents() override {
        std::unique_lock lock(state_->mutex);
        state_->stopping = true;
        state_->wake();
        state_->callEnded.wait(lock, [this] { return !state_->calling; });
    }

    std::unique_ptr<Watch> watch(const std::string& path, std::function<void()> changed) override {
        if (!works_)
            return nullptr;
        const auto told = std::make_shared<const std::function<void()>>(std::move(changed));
        for (;;) {
            {
                const std::lock_guard lock(state_->mutex);
                ++state_->additions;
            }
            const int number =
                inotify_add_watch(state_->events.number(), path.c_str(), wantedEvents);
            const std::lock_guard lock(state_->mutex);
            const bool isInvalid =
                std::ranges::find(state_->invalidated, number) != state_->invalidated.end();
            if (--state_->additions == 0)
                state_->invalidated.clear();
            if (number < 0)
                return nullptr;
            // The number was given up by an earlier listener, or the folder has just vanished.
            if (isInvalid)
                continue;
            state_->listeners.push_back({.number = number, .changed = told});
            return std::make_unique<LinuxWatch>(state_, std::prev(state_->listeners.end()));
        }
    }

private:
    std::shared_ptr<State> state_ = std::make_shared<State>();
    bool works_ = false;
};

} // namespace

std::unique_ptr<FolderEvents> makeFolderEvents() {
    return std::make_unique<LinuxFolderEvents>();
}

} // namespace fennik
