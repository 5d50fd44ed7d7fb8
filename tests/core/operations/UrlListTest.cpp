#include "core/operations/TransferRequest.h"
#include "core/operations/UndoStep.h"

#include <gmock/gmock.h>

namespace fennik::test {

using testing::ElementsAreArray;

TEST(UrlListTest, givesBackEveryUrlAsItWas) {
    const std::vector<FileUrl> urls{
        FileUrl(),
        FileUrl("/a"),
        FileUrl("/a", FileUrl::Form::directory),
        FileUrl("/a/b"),
        FileUrl("//a//b"),
        FileUrl("/a/../\xff\n"),
        FileUrl("/long/" + std::string(70'000, 'x') + "/y"),
    };
    UrlList list;
    // More folders than are remembered, so that some come again as new ones.
    for (int round = 0; round < 3; ++round) {
        for (const auto& url : urls)
            list.push_back(url);
        list.push_back(FileUrl("/gone/again"));
        list.pop_back();
    }
    ASSERT_EQ(list.size(), 3 * urls.size());
    for (std::size_t i = 0; i < list.size(); ++i)
        EXPECT_EQ(list[i], urls[i % urls.size()]) << i;
}

TEST(UrlListTest, stepsAndPairsComeBackInTheirOrder) {
    using namespace UndoSteps;
    const std::vector<UndoStep> steps{
        Created{FileUrl("/to/x", FileUrl::Form::directory)},
        Moved{FileUrl("/from/x/1"), FileUrl("/to/x/1")},
        Trashed{FileUrl("/to/2"), FileUrl("/trash/2 2")},
        RemovedEmptyDirectory{FileUrl("/from/x")},
    };
    UndoStepList list(steps);
    EXPECT_THAT(list.all(), ElementsAreArray(steps));
    for (auto last = steps.rbegin(); last != steps.rend(); ++last) {
        EXPECT_EQ(list.all().back(), *last);
        list.pop_back();
    }
    EXPECT_TRUE(list.empty());

    const std::vector<TransferPair> pairs{{FileUrl("/a/1"), FileUrl("/b/2")},
                                          {FileUrl("/c/3"), FileUrl("/b/4")}};
    const TransferPairs kept(pairs);
    ASSERT_EQ(kept.size(), 2U);
    EXPECT_EQ(kept[0], pairs[0]);
    EXPECT_EQ(kept[1], pairs[1]);
}

} // namespace fennik::test
