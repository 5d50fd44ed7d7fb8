#include "app/model/EngineBridge.h"
#include "core/base/SerialWorker.h"
#include "core/operations/Trashes.h"
#include "tests/support/JobBody.h"
#include "tests/support/ManualExecutor.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>

#include <future>
#include <optional>
#include <thread>

namespace fennik::test {

namespace {

using app::EngineBridge;
using app::PendingConflict;

/// Jobs that do nothing but ask, on a worker of their own.
class EngineBridgeTest : public testing::Test {
protected:
    ~EngineBridgeTest() override {
        bridge.reset();
        EXPECT_EQ(worker.shutDown(std::chrono::seconds(20)), ShutDown::complete);
    }
    Uuid ask(std::promise<ConflictChoice>& answer) {
        const TransferRequest request{.pairs = {{FileUrl("/a"), FileUrl("/b")}}};
        return engine.enqueue(request, {}, bodyOf([&answer](OperationContext& context) {
                                  answer.set_value(context.answer({.source = FileUrl("/a")}));
                              }));
    }
    void awaitClash() {
        while (!clash) {
            ASSERT_TRUE(main.await());
            main.runFirst();
        }
    }

    TempFolder temp;
    SerialWorker worker;
    ManualExecutor main;
    UndoJournal journal;
    FolderTrash trash{FileUrl(temp.path("trash"))};
    TransferEngine engine{{.worker = worker,
                           .journal = journal,
                           .trash = trash,
                           .now = [] { return std::chrono::steady_clock::now(); },
                           .today = [] { return Date{}; }}};
    std::vector<std::size_t> lists; ///< the lengths of those that came
    std::shared_ptr<PendingConflict> clash;
    std::optional<EngineBridge> bridge{
        std::in_place, engine, main,
        EngineBridge::Listeners{
            .jobsChanged = [this](std::vector<JobSnapshot> jobs) { lists.push_back(jobs.size()); },
            .jobFinished = [](const JobSnapshot&, const TransferRequest&) {},
            .clashed = [this](std::shared_ptr<PendingConflict> pending) { clash = pending; }}};
};

} // namespace

TEST(PendingConflictTest, theFirstDecisionCountsForWhoeverWaits) {
    PendingConflict pending({}, {});
    auto answer = std::async(std::launch::async, [&] { return pending.wait(); });
    EXPECT_FALSE(pending.isAnswered());
    pending.answer({.choice = ConflictChoice::skip, .applyToAll = true});
    pending.answer({.choice = ConflictChoice::overwrite});
    EXPECT_EQ(answer.get(), (ConflictDecision{ConflictChoice::skip, true}));
}

TEST_F(EngineBridgeTest, listsThatWereOvertakenNeverReachTheMainThread) {
    std::promise<void> gate;
    worker.execute([opened = gate.get_future().share()] { opened.wait(); });
    for (int job = 0; job < 5; ++job)
        engine.enqueue({}, {}, bodyOf([](OperationContext&) {}));
    EXPECT_EQ(main.count(), 1U) << "one task, however many lists";
    main.runAll();
    EXPECT_THAT(lists, testing::ElementsAre(5U));
    gate.set_value();
}

TEST_F(EngineBridgeTest, theWorkerWaitsUntilTheClashIsDecided) {
    std::promise<ConflictChoice> answer;
    const auto job = ask(answer);
    awaitClash();
    EXPECT_EQ(clash->job.id, job);
    EXPECT_EQ(clash->job.state, JobSnapshot::State::askingConflict);
    clash->answer({.choice = ConflictChoice::rename});
    EXPECT_EQ(answer.get_future().get(), ConflictChoice::rename);
}

TEST_F(EngineBridgeTest, closingCancelsTheClashThatWaitsAndAllThatCome) {
    std::promise<ConflictChoice> first;
    ask(first);
    awaitClash();
    bridge->close();
    EXPECT_EQ(first.get_future().get(), ConflictChoice::cancel);
    std::promise<ConflictChoice> second;
    ask(second);
    EXPECT_EQ(second.get_future().get(), ConflictChoice::cancel);
    clash.reset();
    main.runAll();
    EXPECT_FALSE(clash) << "nobody is asked any more";
}

} // namespace fennik::test
