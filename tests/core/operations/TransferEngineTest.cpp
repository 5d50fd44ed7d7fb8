#include "core/operations/TransferEngine.h"

#include "tests/support/JobBody.h"
#include "tests/support/ManualExecutor.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestTrash.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <utility>

namespace fennik::test {

namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::Ge;
using testing::IsEmpty;
using testing::Le;
using testing::Optional;
using testing::SizeIs;
using State = JobSnapshot::State;

TransferRequest copyOf(const std::vector<std::string>& names) {
    TransferRequest request;
    for (const auto& name : names)
        request.pairs.push_back({FileUrl("/from/" + name), FileUrl("/to/" + name)});
    return request;
}

/// An engine whose worker and clock are turned by hand.
class TransferEngineTest : public testing::Test {
protected:
    TransferEngineTest() {
        engine.setOnUpdate(
            [this](std::vector<JobSnapshot> jobs) { updates.push_back(std::move(jobs)); });
        engine.setOnJobFinished([this](JobSnapshot job, TransferRequest request) {
            finished.push_back({std::move(job), std::move(request)});
        });
    }

    /// Runs a job that does this to its end.
    JobSnapshot run(std::function<void(OperationContext&)> work) {
        engine.enqueue(copyOf({"a"}), {}, bodyOf(std::move(work)));
        worker.runAll();
        return finished.back().job;
    }
    JobSnapshot only() const { return engine.snapshots().at(0); }

    struct Finished {
        JobSnapshot job = {};
        TransferRequest request = {};
    };

    ManualExecutor worker;
    UndoJournal journal;
    TestTrash trash{FileUrl("/nowhere")};
    std::chrono::steady_clock::time_point time{1000s};
    std::function<void()> afterNextLook; ///< at the clock
    std::vector<std::chrono::milliseconds> waits;
    TransferEngine engine{{.worker = worker,
                           .journal = journal,
                           .trash = trash,
                           .now =
                               [this] {
                                   const auto now = time;
                                   if (const auto then = std::exchange(afterNextLook, {}))
                                       then();
                                   return now;
                               },
                           .today = [] { return Date{77, 0}; },
                           .wait =
                               [this](auto&, auto&, std::chrono::milliseconds duration) {
                                   waits.push_back(duration);
                                   time += duration;
                               }}};
    std::vector<std::vector<JobSnapshot>> updates;
    std::vector<Finished> finished;
};

} // namespace

TEST_F(TransferEngineTest, aNewJobWaitsAndSaysWhatItIs) {
    engine.enqueue(copyOf({"a.txt"}));
    auto move = copyOf({"a", "b", "c"});
    move.kind = TransferKind::move;
    engine.enqueue(move);
    engine.enqueue({.kind = TransferKind::pack, .title = "Balení"});

    ASSERT_THAT(updates, SizeIs(3));
    EXPECT_THAT(updates.back(), Each(Field(&JobSnapshot::state, State::waiting)));
    EXPECT_THAT(updates.back(), ElementsAre(Field(&JobSnapshot::title, "Kopírování „a.txt“"),
                                            Field(&JobSnapshot::title, "Přesun 3 položek"),
                                            Field(&JobSnapshot::title, "Balení")));
    EXPECT_EQ(updates.back()[0].destination, "/to");
    EXPECT_EQ(updates.back()[2].destination, "");
}

TEST_F(TransferEngineTest, jobsRunOneAfterTheOtherAndTellEveryState) {
    const auto first = engine.enqueue(copyOf({"a"}), {}, bodyOf([&](OperationContext& context) {
                                          context.setCurrentName("a");
                                          EXPECT_EQ(engine.snapshots()[0].currentName, "a");
                                          EXPECT_EQ(engine.snapshots()[1].state, State::waiting);
                                      }));
    const auto second = engine.enqueue(copyOf({"b"}), {}, bodyOf([&](OperationContext&) {
                                           EXPECT_EQ(engine.snapshots()[0].state, State::finished);
                                           EXPECT_EQ(engine.snapshots()[1].state, State::running);
                                       }));
    worker.runAll();

    std::vector<State> states;
    for (const auto& update : updates)
        states.push_back(update[0].state);
    states.erase(std::ranges::unique(states).begin(), states.end());
    EXPECT_THAT(states,
                ElementsAre(State::waiting, State::preparing, State::running, State::finished));
    EXPECT_THAT(engine.snapshots(), Each(Field(&JobSnapshot::currentName, "")));
    EXPECT_THAT(engine.snapshots(), Each(Field(&JobSnapshot::startedAt, Optional(Date{77, 0}))));
    ASSERT_THAT(finished, SizeIs(2));
    EXPECT_EQ(finished[0].job.id, first);
    EXPECT_EQ(finished[1].job.id, second);
    EXPECT_EQ(finished[1].request.pairs, copyOf({"b"}).pairs);
    EXPECT_THAT(finished[1].job.outcomes, ElementsAre(PairOutcome::pending));
}

TEST_F(TransferEngineTest, aJobWithoutABodyCountsAndTransfersItsPairs) {
    const TempFolder folder;
    folder.file("a", "0123456789");
    folder.folder("to");
    engine.enqueue({.pairs = {{folder.url().appending("a"), FileUrl(folder.path("to/a"))}}});
    worker.runAll();
    ASSERT_THAT(finished, SizeIs(1));
    EXPECT_EQ(finished[0].job.state, State::finished);
    EXPECT_EQ(finished[0].job.totalBytes, 10);
    EXPECT_EQ(finished[0].job.totalFiles, 1);
    EXPECT_EQ(finished[0].job.doneFiles, 1);
    EXPECT_THAT(finished[0].job.outcomes, ElementsAre(PairOutcome::done));
}

TEST_F(TransferEngineTest, whatHappenedDecidesTheFinalState) {
    const auto failed = run([](OperationContext& context) {
        context.addError("První.");
        context.addError("Druhá.");
        context.itemsSkipped(1);
    });
    EXPECT_EQ(failed.state, State::failed);
    EXPECT_EQ(failed.failure, "První.");
    EXPECT_THAT(*failed.errors, ElementsAre("První.", "Druhá."));

    const auto finishedWithErrors = run([](OperationContext& context) {
        context.addError("První.");
        context.filesDone(1);
    });
    EXPECT_EQ(finishedWithErrors.state, State::finished);
    EXPECT_THAT(*finishedWithErrors.errors, ElementsAre("První."));

    const auto failedAsAWhole = run([](OperationContext& context) {
        context.filesDone(1);
        context.addError("První.");
        context.fail("Druhá.");
        context.fail("Třetí.");
    });
    EXPECT_EQ(failedAsAWhole.state, State::failed);
    EXPECT_EQ(failedAsAWhole.failure, "Druhá.");
    EXPECT_THAT(*failedAsAWhole.errors, ElementsAre("První.", "Druhá.", "Třetí."));

    const auto skipped = run([](OperationContext& context) { context.itemsSkipped(2); });
    EXPECT_EQ(skipped.state, State::finished);
    EXPECT_EQ(skipped.skipped, 2);

    const auto cancelled = run([](OperationContext& context) {
        context.addError("První.");
        context.cancelNow();
        EXPECT_EQ(context.checkpoint(), Checkpoint::stop);
    });
    EXPECT_EQ(cancelled.state, State::cancelled);
}

TEST_F(TransferEngineTest, whatWasDoneCanBeUndoneAlsoAfterACancellation) {
    const UndoStep step = UndoSteps::Created{FileUrl("/to/a")};
    run([&](OperationContext& context) {
        context.addStep(step);
        context.addStep(UndoSteps::Created{FileUrl("/to/b")});
        context.dropLastStep();
        context.cancelNow();
    });
    ASSERT_TRUE(journal.last());
    EXPECT_EQ(journal.last()->title, "Kopírování „a“");
    EXPECT_THAT(journal.last()->steps.all(), ElementsAre(step));
    EXPECT_EQ(journal.last()->date, (Date{77, 0}));

    engine.enqueue(copyOf({"b", "c"}), "Vlastní název",
                   [](OperationContext&) { return std::vector{PairOutcome::done}; });
    worker.runAll();
    EXPECT_THAT(finished.back().job.outcomes, ElementsAre(PairOutcome::done, PairOutcome::pending));
    engine.enqueue(copyOf({"b"}), "Vlastní název",
                   bodyOf([&](OperationContext& context) { context.addStep(step); }));
    worker.runAll();
    EXPECT_EQ(journal.last()->title, "Vlastní název");
}

TEST_F(TransferEngineTest, aWaitingJobThatIsCancelledEndsAtOnceAndOnce) {
    const auto id =
        engine.enqueue(copyOf({"a", "b"}), {}, bodyOf([](OperationContext&) { FAIL(); }));
    engine.pause(id);
    EXPECT_EQ(only().state, State::waiting);
    EXPECT_TRUE(only().paused);
    engine.cancel(id);

    EXPECT_EQ(updates.back()[0].state, State::cancelled);
    EXPECT_FALSE(updates.back()[0].paused);
    engine.cancel(id);
    engine.pause(id);
    engine.cancelAll();
    worker.runAll();
    ASSERT_THAT(finished, SizeIs(1));
    EXPECT_EQ(finished[0].job.state, State::cancelled);
    EXPECT_EQ(finished[0].request.pairs, copyOf({"a", "b"}).pairs);
    EXPECT_THAT(finished[0].job.outcomes, ElementsAre(PairOutcome::pending, PairOutcome::pending));
    EXPECT_EQ(only().startedAt, std::nullopt);
    EXPECT_FALSE(only().paused);
}

TEST_F(TransferEngineTest, anAnswerForAllHoldsForTheRestOfTheJobAlone) {
    int questions = 0;
    engine.setResolver([&](const Conflict&) {
        ++questions;
        EXPECT_EQ(updates.back().back().state, State::askingConflict);
        return ConflictDecision{ConflictChoice::skip, true};
    });
    const auto clashTwice = [&](OperationContext& context) {
        EXPECT_EQ(context.answer({}), ConflictChoice::skip);
        EXPECT_EQ(updates.back().back().state, State::running);
        EXPECT_EQ(context.answer({}), ConflictChoice::skip);
    };
    run(clashTwice);
    EXPECT_EQ(questions, 1);
    run(clashTwice);
    EXPECT_EQ(questions, 2);
}

TEST_F(TransferEngineTest, aCancelledJobDoesNothingMoreWhateverIsAnswered) {
    int questions = 0;
    engine.setResolver([&](const Conflict&) {
        ++questions;
        engine.cancel(engine.snapshots().back().id);
        return ConflictDecision{ConflictChoice::overwrite, true};
    });
    const auto job = run([](OperationContext& context) {
        EXPECT_EQ(context.answer({}), ConflictChoice::cancel);
        EXPECT_EQ(context.answer({}), ConflictChoice::cancel);
    });
    EXPECT_EQ(job.state, State::cancelled);
    EXPECT_EQ(questions, 1);

    engine.setResolver({});
    run([](OperationContext& context) {
        EXPECT_EQ(context.answer({}), ConflictChoice::cancel) << "nobody is there to ask";
    });

    engine.setResolver(
        [](const Conflict&) { return ConflictDecision{ConflictChoice::overwrite, true}; });
    run([](OperationContext& context) {
        EXPECT_EQ(context.answer({}), ConflictChoice::overwrite);
        context.cancelNow();
        EXPECT_EQ(context.answer({}), ConflictChoice::cancel) << "the one for all holds no more";
    });
}

TEST_F(TransferEngineTest, progressIsToldTenTimesASecondAtMost) {
    run([&](OperationContext& context) {
        updates.clear();
        for (int item = 0; item < 3000; ++item) {
            time += 1ms;
            context.setCurrentName("a");
            context.bytesWritten(10);
            context.filesDone(1);
        }
        EXPECT_THAT(updates, SizeIs(AllOf(Ge(29U), Le(30U))));
    });
}

TEST_F(TransferEngineTest, whatChangesWhileItIsToldIsToldAfterwards) {
    int depth = 0;
    engine.setOnUpdate([&](std::vector<JobSnapshot> jobs) {
        EXPECT_EQ(++depth, 1) << "calls never overlap";
        updates.push_back(std::move(jobs));
        if (updates.size() == 1)
            engine.pause(updates[0][0].id);
        --depth;
    });
    engine.enqueue(copyOf({"a"}));
    ASSERT_THAT(updates, SizeIs(2));
    EXPECT_TRUE(updates[1][0].paused);
}

TEST_F(TransferEngineTest, onlyBytesReallyMovedMakeTheSpeed) {
    run([&](OperationContext& context) {
        context.setTotals(10'000'000, 10);
        for (int chunk = 0; chunk < 10; ++chunk) {
            time += 150ms;
            context.bytesWritten(15'000);
        }
        context.bytesAccounted(5'000'000);
        EXPECT_DOUBLE_EQ(only().bytesPerSecond, 100'000);
        EXPECT_EQ(only().doneBytes, 5'150'000);
        EXPECT_THAT(only().secondsLeft, Optional(testing::Gt(0)));
        engine.pause(only().id);
        EXPECT_EQ(only().state, State::paused);
        EXPECT_EQ(only().bytesPerSecond, 0);
        EXPECT_EQ(only().secondsLeft, std::nullopt);
        engine.resume(only().id);
        EXPECT_EQ(only().state, State::running);
    });
    EXPECT_EQ(only().bytesPerSecond, 0);
}

TEST_F(TransferEngineTest, whereTheTotalIsNotKnownNoTimeIsToldThatIsLeft) {
    run([&](OperationContext& context) {
        time += 5s;
        context.bytesWritten(1000);
        EXPECT_EQ(only().secondsLeft, std::nullopt);
    });
}

TEST_F(TransferEngineTest, aLimitIsKeptInShortWaits) {
    engine.setThrottle(1'000'000);
    const auto begin = time;
    run([&](OperationContext& context) {
        EXPECT_TRUE(context.isCapped());
        context.bytesAccounted(100'000'000); // costs no time
        for (const int bytes : {8'000'000, 1'000'000, 1'000'000})
            context.bytesWritten(bytes);
        EXPECT_DOUBLE_EQ(only().bytesPerSecond, 1'000'000);
    });
    EXPECT_EQ(time - begin, 10s);
    EXPECT_THAT(waits, Each(Le(500ms)));
    EXPECT_THAT(updates, SizeIs(Ge(20U))) << "it is seen to go on";

    engine.setThrottle(0);
    run([](OperationContext& context) { EXPECT_FALSE(context.isCapped()); });
}

TEST_F(TransferEngineTest, timeSpentAskingOrPausedDoesNotCountForTheLimit) {
    engine.setThrottle(1'000'000);
    engine.setResolver([&](const Conflict&) {
        time += 1h;
        return ConflictDecision{ConflictChoice::skip};
    });
    run([&](OperationContext& context) {
        const auto begin = time;
        context.bytesWritten(1'000'000);
        context.answer({});
        context.bytesWritten(3'000'000);
        EXPECT_EQ(time - begin, 1h + 4s);
        EXPECT_DOUBLE_EQ(only().bytesPerSecond, 1'000'000);

        engine.pause(only().id);
        afterNextLook = [&] {
            time += 1h;
            engine.resume(only().id);
        };
        EXPECT_EQ(context.checkpoint(), Checkpoint::goOn);
        context.bytesWritten(2'000'000);
        EXPECT_EQ(time - begin, 2h + 6s);
    });
}

TEST_F(TransferEngineTest, aPauseEndsTheWaitForALimit) {
    engine.setThrottle(1);
    run([&](OperationContext& context) {
        afterNextLook = [&] { engine.pause(only().id); };
        context.bytesWritten(1000);
        EXPECT_THAT(waits, IsEmpty());
        EXPECT_EQ(only().state, State::paused);
    });
}

TEST_F(TransferEngineTest, jobsThatHaveEndedLeaveTheListWhenToldTo) {
    const auto first = engine.enqueue(copyOf({"a"}));
    const auto second = engine.enqueue(copyOf({"b"}));
    const auto third = engine.enqueue(copyOf({"c"}));
    engine.remove(first);
    EXPECT_THAT(engine.snapshots(), SizeIs(3)) << "it has not ended";
    engine.cancel(first);
    engine.cancel(second);
    engine.remove(first);
    EXPECT_THAT(updates.back(), SizeIs(2));
    engine.removeEnded();
    EXPECT_THAT(updates.back(), ElementsAre(Field(&JobSnapshot::id, third)));
    engine.pause(first); // is not there any more
    engine.cancelAll();
}

TEST_F(TransferEngineTest, thousandsOfErrorsAreNotCopiedAgainWithEveryOne) {
    std::size_t copied = 0;
    const auto job = run([&](OperationContext& context) {
        std::shared_ptr<const std::vector<std::string>> last;
        for (std::size_t count = 1; count <= 20'000; ++count) {
            context.addError("„x“ nejde přečíst");
            const auto errors = only().errors;
            EXPECT_GE(errors->size(), count - count / 16);
            if (errors != last)
                copied += errors->size();
            last = errors;
        }
    });
    EXPECT_LT(copied, 20'000U * 20);
    EXPECT_THAT(*job.errors, SizeIs(20'000));
    EXPECT_EQ(only().errors, job.errors);
}

} // namespace fennik::test
