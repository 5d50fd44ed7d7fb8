#include "core/operations/TransferEngine.h"
#include "tests/support/ManualExecutor.h"
#include "tests/support/TestTrash.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#include <malloc.h>

namespace fennik::test {

namespace {

std::size_t allocatedBytes() {
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

} // namespace

TEST(JobMemoryTest, anItemTakesLessThanFourHundredBytesAtAnyTime) {
    if (allocatedBytes() == 0)
        GTEST_SKIP() << "a sanitizer keeps the memory";
    constexpr std::size_t items = 100'000;
    ManualExecutor worker;
    UndoJournal journal;
    const TestTrash trash{FileUrl("/nowhere")};
    TransferEngine engine({.worker = worker,
                           .journal = journal,
                           .trash = trash,
                           .now = [] { return std::chrono::steady_clock::now(); },
                           .today = [] { return Date{}; }});
    const auto before = allocatedBytes();
    std::size_t most = 0;
    const auto measure = [&](const auto&...) { most = std::max(most, allocatedBytes() - before); };
    engine.setOnJobFinished(measure);
    engine.enqueue({}, {}, [&](OperationContext& context) {
        for (std::size_t item = 0; item < items; ++item) {
            const auto name = "IMG_" + std::to_string(item) + ".jpg";
            context.setCurrentName(name);
            context.addStep(UndoSteps::Created{
                FileUrl("/media/zaloha/Fotografie/2016/Dovolená u moře/" + name)});
            context.filesDone(1);
        }
        measure();
    });
    worker.runAll();
    ASSERT_EQ(journal.last()->steps.size(), items);
    EXPECT_LT(most / items, 400U);
    EXPECT_GT(most / items, 100U) << "the measure measures";
}

} // namespace fennik::test
