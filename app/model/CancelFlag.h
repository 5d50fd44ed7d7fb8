#pragma once

#include <mutex>

namespace fennik::app {

/// Tells work in the background that nobody wants its result any more. Safe on any thread.
class CancelFlag {
public:
    void set() {
        const std::lock_guard lock(lock_);
        value_ = true;
    }
    bool isSet() const {
        const std::lock_guard lock(lock_);
        return value_;
    }

private:
    mutable std::mutex lock_;
    bool value_ = false;
};

} // namespace fennik::app
