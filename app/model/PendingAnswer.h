#pragma once

#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

namespace fennik::app {

/// An answer that a worker waits for: shared between it and the main thread, where the user is
/// asked. Safe on any thread.
template <class Answer>
class PendingAnswer {
public:
    /// The first answer counts.
    void answer(Answer answer) {
        {
            const std::lock_guard guard(lock_);
            if (answer_)
                return;
            answer_ = std::move(answer);
        }
        answered_.notify_all();
    }
    bool isAnswered() const {
        const std::lock_guard guard(lock_);
        return answer_.has_value();
    }
    /// Returns the answer once there is one.
    Answer wait() {
        std::unique_lock guard(lock_);
        answered_.wait(guard, [this] { return answer_.has_value(); });
        return *answer_;
    }

private:
    mutable std::mutex lock_;
    std::condition_variable answered_;
    std::optional<Answer> answer_;
};

} // namespace fennik::app
