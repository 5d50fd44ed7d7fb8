#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace fennik {

using Task = std::move_only_function<void()>;

/// How the end of a worker with threads went. A thread that is left hangs in a system call; the
/// process must then end without running static destructors.
enum class ShutDown { complete, threadsLeft };

/// Runs tasks somewhere else, later. Tests run them by hand.
class Executor {
public:
    virtual ~Executor() = default;
    /// Takes `task` over and returns at once; callable from any thread.
    virtual void execute(Task task) = 0;
};

/// Runs tasks that may wait for a disk, each on a thread of its own where need be.
class DiskExecutor {
public:
    virtual ~DiskExecutor() = default;
    /// As `Executor::execute`; `path` is what the task is going to touch.
    virtual void execute(std::string path, Task task) = 0;
};

/// A task that does `work`, and then hands its value to `done` as `runThen` does.
template <class Work, class Done>
Task thereAndBack(Executor& main, std::weak_ptr<void> life, Work work, Done done) {
    return [&main, life = std::move(life), work = std::move(work),
            done = std::move(done)]() mutable {
        main.execute([life = std::move(life), done = std::move(done), result = work()]() mutable {
            if (!life.expired())
                done(std::move(result));
        });
    };
}

/// The one road from the main thread to a disk and back. `work` runs on `disk` and returns a value;
/// it owns everything it needs. `done` then runs on `main` with that value, unless the owner that
/// `life` watches is gone by then. Call on the main thread.
template <class Work, class Done>
void runThen(DiskExecutor& disk, Executor& main, std::string path, std::weak_ptr<void> life,
             Work work, Done done) {
    disk.execute(std::move(path),
                 thereAndBack(main, std::move(life), std::move(work), std::move(done)));
}

/// The same for work that has to be done in order.
template <class Work, class Done>
void runThen(Executor& worker, Executor& main, std::weak_ptr<void> life, Work work, Done done) {
    worker.execute(thereAndBack(main, std::move(life), std::move(work), std::move(done)));
}

} // namespace fennik
