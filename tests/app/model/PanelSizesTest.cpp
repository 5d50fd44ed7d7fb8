#include "app/model/PanelModel.h"

#include "tests/support/PanelModelFixture.h"

#include <cerrno>
#include <filesystem>

namespace fennik::test {

namespace {

using namespace app;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

class PanelSizesTest : public PanelModelFixture {
protected:
    PanelSizesTest() {
        for (const auto* name : {"a", "b", "b/x", "x"})
            temp.folder(name);
        temp.file("a/file", std::string(10, 'x'));
        temp.file("b/file", std::string(2000, 'x'));
        temp.file("x/file", std::string(300, 'x'));
        files.beforeReadSizes([this](const std::string& path) { walked.push_back(path); });
    }
    /// As in memory, where sizes may be computed at any time.
    void computeUnasked() {
        volumes = {{.mountPoint = "/", .type = "tmpfs"}};
        settings.set(SettingKeys::autoFolderSizes, true);
    }
    PanelModel& other() {
        if (!other_)
            other_ = std::make_unique<PanelModel>(PanelSide::right, services(), settings, sizeCache,
                                                  noPassword, temp.url().path());
        return *other_;
    }

    std::vector<std::string> walked;

private:
    std::unique_ptr<PanelModel> other_;
};

} // namespace

TEST_F(PanelSizesTest, theOrderAndTheTotalsFollowSizesAsTheyCome) {
    show();
    panel.chooseSort(SortKey::size);
    moveTo("b");
    panel.markAll();
    // Every folder takes longer than the time between two messages.
    files.beforeReadSizes([this](const std::string&) { timers.pass(200ms); });
    EXPECT_TRUE(panel.sizeAllFolders());
    sizingDisk.runAll();
    main.runFirst();
    EXPECT_THAT(panel.folderSizes(), UnorderedElementsAre(Pair("a", 10)));
    EXPECT_THAT(panel.sizing(), UnorderedElementsAre("b", "x"));
    EXPECT_EQ(panel.markTotals(), (MarkTotals{.count = 3, .bytes = 10, .unsizedFolders = 2}));
    EXPECT_EQ(underCursor(), "b");
    settle();
    EXPECT_THAT(namesOf(panel.items()), ElementsAre("..", "b", "x", "a"));
    EXPECT_EQ(underCursor(), "b");
    EXPECT_EQ(panel.markTotals(), (MarkTotals{.count = 3, .bytes = 2310}));
    EXPECT_THAT(panel.sizing(), IsEmpty());
}

TEST_F(PanelSizesTest, resultsOfAFolderThatWasLeftAreDropped) {
    show();
    panel.sizeAllFolders();
    panel.navigate(FileUrl(temp.path("b")));
    disk.runAll();
    sizingDisk.runAll();
    main.runAll();
    EXPECT_THAT(namesOf(panel.items()), ElementsAre("..", "x", "file"));
    EXPECT_THAT(panel.folderSizes(), IsEmpty()) << "a folder of the same name has another size";
    EXPECT_THAT(panel.sizing(), IsEmpty());

    show();
    panel.sizeAllFolders();
    panel.newTab();
    EXPECT_FALSE(panel.sizing().empty()) << "a second tab shows the same folder";
    panel.openTab(temp.path("b"));
    EXPECT_THAT(panel.sizing(), IsEmpty());
    settle();
    EXPECT_FALSE(panel.stopSizing());
}

TEST_F(PanelSizesTest, whatIsStoppedKeepsWhatWasKnown) {
    show();
    moveTo("a");
    panel.markAndSize();
    settle();
    panel.sizeAllFolders();
    EXPECT_TRUE(panel.stopSizing());
    EXPECT_FALSE(panel.stopSizing());
    settle();
    EXPECT_THAT(panel.folderSizes(), ElementsAre(Pair("a", 10)));
    EXPECT_THAT(panel.sizing(), IsEmpty());
}

TEST_F(PanelSizesTest, aFolderThatCannotBeReadHasNoSize) {
    show();
    files.fail(FaultyFileSystem::Call::readSizes, EACCES);
    panel.sizeAllFolders();
    settle();
    EXPECT_THAT(panel.folderSizes(), IsEmpty());
    EXPECT_THAT(panel.sizing(), IsEmpty());
    EXPECT_FALSE(panel.stopSizing());
    files.heal();
    panel.sizeAllFolders();
    settle();
    EXPECT_EQ(panel.folderSizes().size(), 3U);
}

TEST_F(PanelSizesTest, askingAgainDoesNotComputeTwice) {
    show();
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(panel.sizeAllFolders()) << "the folders are being computed";
    moveTo("a");
    panel.markAndSize();
    EXPECT_EQ(sizingDisk.count(), 1U);
}

TEST_F(PanelSizesTest, theOtherPanelLearnsWhatIsKnownOfTheSameFolder) {
    show();
    other().refresh();
    settle();
    other().chooseSort(SortKey::size);
    other().setCursor(1);
    other().markAll();
    const auto cursorName = std::string(other().cursorItem()->name);
    ASSERT_EQ(cursorName, "a");
    panel.sizeAllFolders();
    settle();
    EXPECT_THAT(other().folderSizes(), IsEmpty());
    walked.clear();

    const auto generation = other().generation();
    other().refresh();
    settle();
    EXPECT_THAT(namesOf(other().items()), ElementsAre("..", "b", "x", "a"));
    EXPECT_GT(other().generation(), generation) << "whoever shows rows must hear of their order";
    EXPECT_EQ(other().cursorItem()->name, cursorName);
    EXPECT_EQ(other().markTotals().bytes, 2310);
    EXPECT_THAT(walked, IsEmpty());
}

TEST_F(PanelSizesTest, aNewFolderDoesNotInheritTheSizeOfAnOldOne) {
    show();
    panel.sizeAllFolders();
    settle();
    std::filesystem::remove_all(temp.path("x"));
    panel.refresh();
    settle();
    temp.folder("x");
    panel.refresh();
    settle();
    EXPECT_THAT(panel.folderSizes(), UnorderedElementsAre(Pair("a", 10), Pair("b", 2000)));
    other().refresh();
    settle();
    EXPECT_FALSE(other().folderSizes().contains("x"));
}

TEST_F(PanelSizesTest, sizesAreComputedUnaskedOnlyWhereThatIsAllowed) {
    show();
    EXPECT_TRUE(sizingDisk.isIdle());
    volumes = {{.mountPoint = "/", .type = "tmpfs"},
               {.mountPoint = temp.path("b"), .type = "nfs", .isRemote = true}};
    settings.set(SettingKeys::autoFolderSizes, true);
    panel.refresh();
    settle();
    EXPECT_EQ(panel.folderSizes().at("a"), 10);
    EXPECT_THAT(walked, testing::Not(testing::Contains(temp.path("b"))));

    // Asked for, they are; and they go on being asked for on the other side.
    moveTo("b");
    panel.markAndSize();
    panel.swapWith(other());
    settle();
    EXPECT_EQ(other().folderSizes().at("b"), 2000);
}

TEST_F(PanelSizesTest, aFolderThatIsReadAgainAndAgainIsComputedOnce) {
    computeUnasked();
    show();
    for (int i = 0; i < 5; ++i) {
        temp.file("file" + std::to_string(i));
        panel.refresh();
        disk.runAll();
        main.runAll();
    }
    EXPECT_EQ(sizingDisk.count(), 0U) << "all was known";
    other().refresh();
    settle();

    temp.folder("new");
    for (int i = 0; i < 5; ++i) {
        temp.file("new/file" + std::to_string(i), "x");
        panel.refresh();
        disk.runAll();
        main.runAll();
    }
    EXPECT_EQ(sizingDisk.count(), 1U);
    settle();
    EXPECT_EQ(panel.folderSizes().at("new"), 5);

    // What changed while it was being computed is computed again, once.
    temp.file("new/a", "x");
    panel.refresh();
    disk.runAll();
    main.runAll();
    sizingDisk.runAll();
    temp.file("new/b", "x");
    panel.refresh();
    disk.runAll();
    while (!main.isIdle())
        main.runLast(); // the listing comes before the size
    EXPECT_EQ(sizingDisk.count(), 1U);
    settle();
    EXPECT_EQ(panel.folderSizes().at("new"), 7);
}

TEST_F(PanelSizesTest, afterAStopNothingIsComputedUnaskedUntilTheUserReadsAnew) {
    computeUnasked();
    panel.refresh();
    disk.runAll();
    main.runAll();
    EXPECT_TRUE(panel.stopSizing());
    temp.folder("new");
    events.tell(temp.url().path());
    timers.pass(1s);
    main.runAll();
    timers.pass(1s);
    settle();
    EXPECT_TRUE(panel.items().rowOf("new"));
    EXPECT_THAT(panel.folderSizes(), IsEmpty());
    panel.refresh();
    settle();
    EXPECT_EQ(panel.folderSizes().size(), 4U);
}

} // namespace fennik::test
