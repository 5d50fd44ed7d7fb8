#include "app/model/PanelModel.h"

#include "tests/support/PanelModelFixture.h"

#include <filesystem>
#include <unistd.h>

namespace fennik::test {

namespace {

using namespace app;
using namespace std::chrono_literals;
using FolderOpener::Failure;
using testing::ElementsAre;

class PanelReloadTest : public PanelModelFixture {
protected:
    PanelReloadTest() {
        for (const auto* name : {"shown", "shown/sub", "elsewhere"})
            temp.folder(name);
        temp.file("shown/a");
        temp.file("shown/b");
        show("shown");
        timers.pass(10s);
        QObject::connect(&panel, &PanelModel::changed,
                         [this](PanelChanges changes) { seen |= changes; });
    }

    std::string path() const { return temp.path("shown"); }
    /// Another program has changed the shown folder.
    void tell() {
        events.tell(path());
        main.runAll();
    }
    /// How often a folder was read so far.
    std::size_t loads() const { return lines.size(); }

    PanelChanges seen;
};

} // namespace

TEST_F(PanelReloadTest, aChangeComesInWithoutMovingAnything) {
    moveTo("b");
    mark("a");
    const auto generation = panel.generation();
    tell();
    settle();
    EXPECT_EQ(panel.generation(), generation) << "nothing has changed after all";
    EXPECT_FALSE(seen.testFlag(PanelChange::items));

    timers.pass(10s);
    temp.file("shown/0");
    tell();
    settle();
    EXPECT_THAT(namesOf(panel.items()), ElementsAre("..", "sub", "0", "a", "b"));
    EXPECT_EQ(panel.generation(), generation + 1);
    EXPECT_EQ(underCursor(), "b");
    EXPECT_TRUE(panel.marks().isMarked("a"));
    EXPECT_FALSE(seen & (PanelChange::visit | PanelChange::tabs));
    EXPECT_EQ(events.count(), 1U);
}

TEST_F(PanelReloadTest, aBurstIsReadOncePerPause) {
    panel.refresh();
    timers.pass(200ms); // so long does the reading take
    settle();
    const auto before = loads();
    for (int i = 0; i < 10'000; ++i)
        tell();
    settle();
    timers.pass(599ms);
    settle();
    EXPECT_EQ(loads(), before);
    timers.pass(1ms);
    settle();
    EXPECT_EQ(loads(), before + 1);
    tell();
    timers.pass(249ms);
    settle();
    EXPECT_EQ(loads(), before + 1);
    timers.pass(1ms);
    settle();
    EXPECT_EQ(loads(), before + 2);
    timers.pass(10s);
    settle();
    EXPECT_EQ(loads(), before + 2);
}

TEST_F(PanelReloadTest, aChangeWhileTheFolderIsReadLeadsToOneMoreReading) {
    panel.refresh();
    disk.runAll();
    temp.file("shown/late");
    events.tell(path());
    events.tell(path());
    while (!main.isIdle())
        main.runLast(); // the news comes before the listing
    EXPECT_FALSE(panel.items().rowOf("late"));
    const auto before = loads();
    timers.pass(250ms);
    settle();
    EXPECT_TRUE(panel.items().rowOf("late"));
    timers.pass(10s);
    settle();
    EXPECT_EQ(loads(), before + 1);
}

TEST_F(PanelReloadTest, aChangeIsNotLostOnAWayThatLedNowhere) {
    const auto expectComesIn = [this](const std::string& name) {
        timers.pass(1s);
        settle();
        EXPECT_TRUE(panel.items().rowOf(name)) << name;
    };
    // During a navigation that is given up …
    panel.navigate(FileUrl(temp.path("elsewhere")));
    temp.file("shown/1");
    tell();
    panel.escape();
    expectComesIn("1");
    // … or that failed while its path was typed …
    panel.tryNavigate(FileUrl(temp.path("missing")));
    temp.file("shown/2");
    tell();
    settle();
    EXPECT_TRUE(panel.typedFailure());
    expectComesIn("2");
    // … or before it, while a reading was to come after the pause.
    tell();
    settle();
    temp.file("shown/3");
    tell();
    panel.tryNavigate(FileUrl(temp.path("missing")));
    settle();
    expectComesIn("3");

    // A reading that was left does not come back by itself.
    timers.pass(10s);
    tell();
    EXPECT_TRUE(panel.loading());
    tell();
    panel.escape();
    timers.pass(10s);
    EXPECT_FALSE(panel.loading());
}

TEST_F(PanelReloadTest, changesOfAFolderThatIsNotShownAreNoMatter) {
    panel.navigate(FileUrl(temp.path("elsewhere")));
    disk.runAll();
    events.tell(temp.path("elsewhere"));
    panel.navigate(FileUrl(temp.path("shown/sub")));
    disk.runAll();
    main.runLast();
    ASSERT_EQ(panel.tab().path, temp.path("shown/sub"));
    timers.pass(10s);
    main.runLast(); // of the folder whose listing nobody waits for any more
    EXPECT_FALSE(panel.loading());
    settle();
    tell();
    EXPECT_TRUE(disk.isIdle()) << "the folder was left";
}

TEST_F(PanelReloadTest, aFolderThatIsGoneStaysThePathOfItsTab) {
    std::filesystem::remove_all(path());
    tell();
    settle();
    EXPECT_EQ(panel.error(), Failure::notFound(panel.folder()));
    EXPECT_EQ(panel.tab().path, path());
    EXPECT_TRUE(panel.items().empty());
    EXPECT_EQ(panel.cursorItem(), std::nullopt);
    temp.folder("shown");
    panel.refresh();
    settle();
    EXPECT_FALSE(panel.error());

    // A file in its place is no folder, and nobody asked to go to where it lies.
    timers.pass(10s);
    std::filesystem::remove_all(path());
    temp.file("shown");
    tell();
    settle();
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(panel.error(), Failure::notFound(panel.folder()));
        EXPECT_EQ(panel.tab().path, path());
        panel.refresh();
        settle();
    }
    panel.goToParent();
    settle();
    EXPECT_EQ(panel.tab().path, temp.url().path());
    EXPECT_EQ(underCursor(), "shown");
}

TEST_F(PanelReloadTest, nothingHappensToRowsThatAnErrorHides) {
    moveTo("b");
    mark("a");
    panel.navigate(FileUrl(temp.path("missing")));
    settle();
    ASSERT_TRUE(panel.error());
    EXPECT_THAT(panel.targets(), testing::IsEmpty());
    panel.setCursor(0);
    panel.jumpTo("a");
    panel.markAll();
    panel.invertMarks();
    panel.toggleMarkAndMoveDown();
    panel.markAndMove(1);
    panel.markRange(0, 3);
    panel.markByMask(FileMask("*"), Marking::mark);
    panel.unmarkAll();
    panel.markAndSize();
    panel.sizeAllFolders();
    EXPECT_TRUE(sizingDisk.isIdle());
    panel.escape();
    settle();
    EXPECT_EQ(underCursor(), "b");
    EXPECT_THAT(panel.targets(), ElementsAre(*panel.items().rowOf("a")));
}

TEST_F(PanelReloadTest, aTypedPathThatFailsLeavesAllAsItIs) {
    moveTo("b");
    const auto generation = panel.generation();
    panel.tryNavigate(FileUrl(temp.path("missing")));
    EXPECT_FALSE(panel.typedFailure());
    settle();
    EXPECT_EQ(panel.typedFailure(), Failure::notFound(FileUrl(temp.path("missing"))));
    EXPECT_FALSE(panel.error());
    EXPECT_EQ(panel.generation(), generation);
    EXPECT_EQ(panel.tab().path, path());
    EXPECT_EQ(underCursor(), "b");
    panel.tryNavigate(FileUrl(temp.path("elsewhere")));
    EXPECT_FALSE(panel.typedFailure());
    settle();
    EXPECT_EQ(panel.tab().path, temp.path("elsewhere"));
    EXPECT_TRUE(panel.canGo(PanelHistory::Step::back));
}

} // namespace fennik::test
