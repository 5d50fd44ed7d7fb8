#include "core/base/SerialWorker.h"
#include "core/operations/TransferEngine.h"
#include "tests/support/JobBody.h"
#include "tests/support/TestTrash.h"

#include <gmock/gmock.h>

#include <atomic>
#include <map>
#include <random>
#include <semaphore>
#include <thread>

namespace fennik::test {

namespace {

using namespace std::chrono_literals;
using testing::Each;
using testing::Pair;
using testing::SizeIs;
using State = JobSnapshot::State;

/// An engine with a thread and a clock of their own.
class TransferEngineThreadsTest : public testing::Test {
protected:
    TransferEngineThreadsTest() {
        engine->setOnUpdate([this](std::vector<JobSnapshot> jobs) {
            const std::lock_guard guard(lock);
            told = std::move(jobs);
            changed.notify_all();
        });
        engine->setOnJobFinished([this](const JobSnapshot& job, const TransferRequest&) {
            const std::lock_guard guard(lock);
            ++timesFinished[job.id];
            changed.notify_all();
        });
    }
    ~TransferEngineThreadsTest() override { worker.shutDown(10s); }

    template <class Condition>
    bool becomes(Condition condition) {
        std::unique_lock guard(lock);
        return changed.wait_for(guard, 10s, condition);
    }
    bool onlyJobBecomes(State state) {
        return becomes([&] { return told.size() == 1 && told[0].state == state; });
    }
    bool allFinish(std::size_t count) {
        return becomes([&] { return timesFinished.size() == count; });
    }

    std::mutex lock; ///< guards these three
    std::condition_variable changed;
    std::vector<JobSnapshot> told;
    std::map<Uuid, int> timesFinished;

    SerialWorker worker;
    UndoJournal journal;
    TestTrash trash{FileUrl("/nowhere")};
    std::unique_ptr<TransferEngine> engine = std::make_unique<TransferEngine>(
        EngineServices{.worker = worker,
                       .journal = journal,
                       .trash = trash,
                       .now = [] { return std::chrono::steady_clock::now(); },
                       .today = [] { return Date{}; }});
};

/// Works until it is cancelled.
void workOn(OperationContext& context) {
    while (context.checkpoint() == Checkpoint::goOn) {
        context.setCurrentName("a");
        context.bytesWritten(1);
    }
}

} // namespace

TEST_F(TransferEngineThreadsTest, aJobPausedBeforeItsTimeStopsAtItsFirstCheckpoint) {
    std::binary_semaphore released{0};
    engine->enqueue({}, {}, bodyOf([&](OperationContext&) { released.acquire(); }));
    const auto resumed = engine->enqueue({}, {}, bodyOf([](OperationContext&) {}));
    const auto cancelled =
        engine->enqueue({}, {}, bodyOf([](OperationContext&) { ADD_FAILURE(); }));
    engine->pause(resumed);
    engine->pause(cancelled);
    released.release();
    ASSERT_TRUE(becomes([&] { return told.size() == 3 && told[1].state == State::paused; }));
    EXPECT_TRUE(engine->snapshots()[1].paused);
    engine->resume(resumed);
    ASSERT_TRUE(becomes([&] { return told[2].state == State::paused; }));
    EXPECT_EQ(engine->snapshots()[1].state, State::finished);
    engine->cancel(cancelled);
    ASSERT_TRUE(allFinish(3));
    EXPECT_EQ(engine->snapshots()[2].state, State::cancelled);
}

TEST_F(TransferEngineThreadsTest, aPausedJobThatIsCancelledWakesAndEnds) {
    const auto id = engine->enqueue({}, {}, bodyOf(workOn));
    ASSERT_TRUE(onlyJobBecomes(State::running));
    engine->pause(id);
    ASSERT_TRUE(onlyJobBecomes(State::paused));
    engine->cancel(id);
    EXPECT_TRUE(onlyJobBecomes(State::cancelled));
}

TEST_F(TransferEngineThreadsTest, aCancellationEndsTheWaitForALimitAtOnce) {
    engine->setThrottle(1);
    const auto id = engine->enqueue({}, {}, bodyOf([](OperationContext& context) {
                                        context.bytesWritten(1'000'000);
                                        EXPECT_EQ(context.checkpoint(), Checkpoint::stop);
                                    }));
    ASSERT_TRUE(onlyJobBecomes(State::running));
    std::this_thread::sleep_for(20ms); // it waits by now, as a rule, and would for eleven days
    engine->cancel(id);
    ASSERT_TRUE(onlyJobBecomes(State::cancelled));
}

TEST_F(TransferEngineThreadsTest, stormsOfCommandsNeverHangOrEndAJobTwice) {
    constexpr std::size_t jobs = 200;
    engine->setResolver([](const Conflict&) {
        std::this_thread::yield();
        return ConflictDecision{ConflictChoice::skip};
    });
    std::vector<Uuid> ids;
    for (std::size_t number = 0; number < jobs; ++number)
        ids.push_back(engine->enqueue({}, {}, bodyOf([](OperationContext& context) {
                                          while (context.checkpoint() == Checkpoint::goOn) {
                                              context.answer({});
                                              context.bytesWritten(1);
                                              context.addError("Nejde to.");
                                          }
                                      })));
    const auto disturb = [&](unsigned seed) {
        std::mt19937 random(seed);
        for (int command = 0; command < 2000; ++command) {
            const auto& id = ids[random() % jobs];
            switch (random() % 5) {
            case 0:
                engine->pause(id);
                break;
            case 1:
                engine->resume(id);
                break;
            case 2:
                engine->snapshots();
                break;
            case 3:
                engine->removeEnded();
                break;
            default:
                engine->cancel(ids[random() % (static_cast<unsigned>(command) / 10 + 1)]);
            }
        }
        engine->cancelAll();
    };
    {
        const std::jthread other([&] { disturb(1); });
        disturb(2);
    }
    ASSERT_TRUE(allFinish(jobs));
    EXPECT_THAT(timesFinished, Each(Pair(testing::_, 1)));
    engine->removeEnded();
    EXPECT_TRUE(becomes([&] { return told.empty(); }));
}

TEST_F(TransferEngineThreadsTest, theLastListToldIsTheLatest) {
    for (int round = 0; round < 200; ++round) {
        const auto id = engine->enqueue({}, {}, bodyOf([](OperationContext& context) {
                                            context.setCurrentName("a");
                                            context.filesDone(1);
                                        }));
        engine->pause(id);
        engine->resume(id);
        ASSERT_TRUE(onlyJobBecomes(State::finished)) << "round " << round;
        engine->remove(id);
        ASSERT_TRUE(becomes([&] { return told.empty(); }));
    }
}

TEST_F(TransferEngineThreadsTest, anEngineMayGoWhileAJobStillAsks) {
    std::binary_semaphore asked{0};
    std::binary_semaphore answered{0};
    std::atomic<bool> wasCancelled = false;
    engine->setResolver([&](const Conflict&) {
        asked.release();
        answered.acquire();
        return ConflictDecision{ConflictChoice::overwrite};
    });
    engine->enqueue({}, {}, bodyOf([&](OperationContext& context) {
                        wasCancelled = context.answer({}) == ConflictChoice::cancel;
                        context.addStep(UndoSteps::Created{FileUrl("/to/a")});
                    }));
    engine->enqueue({}, {}, bodyOf([](OperationContext&) { ADD_FAILURE(); }));
    asked.acquire();
    engine->cancelAll();
    engine.reset();
    const auto finishedBefore = timesFinished.size();
    answered.release();
    EXPECT_EQ(worker.shutDown(10s), ShutDown::complete);
    EXPECT_TRUE(wasCancelled);
    EXPECT_TRUE(journal.last()) << "what was done stays known";
    EXPECT_EQ(timesFinished.size(), finishedBefore) << "nobody is told any more";
}

} // namespace fennik::test
