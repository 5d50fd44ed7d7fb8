#include "core/operations/DirectContext.h"

#include "tests/support/TestTrash.h"

#include <gmock/gmock.h>

#include <limits>

namespace fennik::test {

namespace {

using testing::ElementsAre;

const TestTrash noTrash{FileUrl("/nowhere")};

} // namespace

TEST(DirectContextTest, asksOnceWhereTheAnswerHoldsForAllAndNeverAfterACancellation) {
    int questions = 0;
    DirectContext context(TransferKind::extract, noTrash, [&](const Conflict&) {
        ++questions;
        return ConflictDecision{ConflictChoice::rename, questions == 2};
    });
    for (int clash = 0; clash < 4; ++clash)
        EXPECT_EQ(context.answer({}), ConflictChoice::rename);
    EXPECT_EQ(questions, 2);

    EXPECT_EQ(context.checkpoint(), Checkpoint::goOn);
    context.cancelNow();
    EXPECT_EQ(context.checkpoint(), Checkpoint::stop);
    EXPECT_EQ(context.answer({}), ConflictChoice::cancel);
}

TEST(DirectContextTest, withNobodyToAskAClashEndsTheWork) {
    EXPECT_EQ(DirectContext(TransferKind::move, noTrash).answer({}), ConflictChoice::cancel);
}

TEST(DirectContextTest, keepsTheAccountOfTheWork) {
    std::vector<std::int64_t> told;
    DirectContext context(TransferKind::copy, noTrash, {},
                          [&](std::int64_t count) { told.push_back(count); });
    context.bytesWritten(10);
    context.bytesAccounted(5);
    const UndoStep kept = UndoSteps::Created{FileUrl("/a")};
    context.addStep(kept);
    context.addStep(UndoSteps::Created{FileUrl("/b")});
    context.dropLastStep();

    EXPECT_THAT(told, ElementsAre(10, 5));
    EXPECT_EQ(context.doneBytes(), 15);
    EXPECT_THAT(context.takeSteps(), ElementsAre(kept));

    context.bytesAccounted(std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(context.doneBytes(), std::numeric_limits<std::int64_t>::max());
}

} // namespace fennik::test
