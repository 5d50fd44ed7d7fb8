#include "core/operations/TransferEngine.h"
#include "tests/support/JobBody.h"
#include "tests/support/ManualExecutor.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestTrash.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>

#include <malloc.h>

namespace fennik::test {

namespace {

std::size_t allocatedBytes() {
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

/// Runs one job, and looks at the memory again and again as the job looks at the clock.
class JobMemoryTest : public testing::Test {
protected:
    void SetUp() override {
        if (allocatedBytes() == 0)
            GTEST_SKIP() << "a sanitizer keeps the memory";
        engine.setOnJobFinished([this](const auto&...) { measure(); });
    }
    void measure() { most = std::max(most, allocatedBytes()); }
    void expectLittleFor(std::size_t items, std::size_t before) const {
        EXPECT_EQ(journal.last()->steps.size(), items);
        RecordProperty("bytes", std::to_string((most - before) / items));
        EXPECT_LT((most - before) / items, 400U);
        EXPECT_GT((most - before) / items, 20U) << "the measure measures";
    }

    ManualExecutor worker;
    UndoJournal journal;
    TestTrash trash{FileUrl("/nowhere")};
    std::size_t most = 0;
    std::size_t looks = 0;
    TransferEngine engine{{.worker = worker,
                           .journal = journal,
                           .trash = trash,
                           .now =
                               [this] {
                                   if (++looks % 16 == 0)
                                       measure();
                                   return std::chrono::steady_clock::now();
                               },
                           .today = [] { return Date{}; }}};
};

} // namespace

TEST_F(JobMemoryTest, anItemInATreeTakesLittle) {
    constexpr std::size_t items = 100'000;
    const auto before = allocatedBytes();
    engine.enqueue({}, {}, bodyOf([&](OperationContext& context) {
                       for (std::size_t item = 0; item < items; ++item) {
                           const auto name = "IMG_" + std::to_string(item) + ".jpg";
                           context.addStep(UndoSteps::Created{
                               FileUrl("/media/zaloha/Fotografie/2016/Dovolená u moře/" + name)});
                       }
                       measure();
                   }));
    worker.runAll();
    expectLittleFor(items, before);
}

TEST_F(JobMemoryTest, anItemOfItsOwnTakesLittleEvenDeepDown) {
    constexpr std::size_t items = 5'000;
    const TempFolder folder;
    const auto deep = "fotografie/" + std::string(100, 'x') + "/" + std::string(100, 'y');
    folder.folder(deep + "/from");
    folder.folder(deep + "/to");
    const FileUrl from(folder.path(deep + "/from"));
    const FileUrl to(folder.path(deep + "/to"));
    for (std::size_t item = 0; item < items; ++item)
        folder.file(deep + "/from/IMG_" + std::to_string(item) + ".jpg", "");
    const auto before = allocatedBytes();
    {
        TransferRequest request{.kind = TransferKind::move};
        for (std::size_t item = 0; item < items; ++item) {
            const auto name = "IMG_" + std::to_string(item) + ".jpg";
            request.pairs.push_back({from.appending(name), to.appending(name)});
        }
        engine.enqueue(std::move(request));
    }
    worker.runAll();
    expectLittleFor(items, before);
}

} // namespace fennik::test
