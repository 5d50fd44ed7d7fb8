#include "app/model/QuickPreview.h"

#include "app/model/ItemInspection.h"
#include "core/base/CzechText.h"
#include "tests/support/AppFixture.h"

#include <sys/stat.h>

#include <filesystem>

namespace fennik::test {

namespace {

using namespace app;
using namespace std::chrono_literals;
using testing::AllOf;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::VariantWith;
using Direction = QuickPreview::Direction;

class QuickPreviewTest : public AppFixture {
protected:
    QuickPreviewTest() {
        temp.folder("left/folder/sub");
        temp.file("left/folder/inner.txt", "inner");
        temp.file("left/folder/.hidden", "hidden");
        for (const auto* name : {"left/a.txt", "left/b.txt", "left/c.txt"})
            temp.file(name, std::string("text of ") + name);
        temp.folder("right");
        app.start(temp.path("left"), temp.path("right"));
        settle();
    }
    ~QuickPreviewTest() override { app.stopJobs(); }

    PanelModel& panel() { return app.activePanel(); }
    void moveTo(std::string_view name) {
        const auto row = panel().items().rowOf(name);
        ASSERT_TRUE(row) << name;
        panel().setCursor(static_cast<std::ptrdiff_t>(*row));
    }
    void rest() {
        timers.pass(100ms);
        settle();
    }
    /// Shows the preview of an item.
    const PreviewContent& contentOf(std::string_view name) {
        moveTo(name);
        if (!preview().isOpen())
            app.perform(KAction::quickLook);
        rest();
        return preview().content();
    }
    QuickPreview& preview() { return app.quickPreview(); }
    std::string subject() { return preview().subject() ? preview().subject()->item.name : ""; }

    AppModel app{appServices(), home()};
};

auto isText(const std::string& text) {
    return VariantWith<PreviewText>(Field(&PreviewText::text, text));
}

auto isNothing(const std::string& reason) {
    return VariantWith<PreviewNothing>(Field(&PreviewNothing::reason, HasSubstr(reason)));
}

} // namespace

TEST_F(QuickPreviewTest, goesWithTheCursorOnceItRests) {
    moveTo("a.txt");
    app.perform(KAction::quickLook);
    EXPECT_TRUE(preview().isLoading());
    settle();
    EXPECT_THAT(preview().content(), isText("text of left/a.txt"));

    moveTo("b.txt");
    timers.pass(99ms);
    moveTo("c.txt");
    timers.pass(99ms);
    EXPECT_TRUE(sizingDisk.isIdle()) << "nobody wants what the cursor only passes";
    EXPECT_EQ(subject(), "a.txt");
    rest();
    EXPECT_EQ(subject(), "c.txt");
    EXPECT_THAT(preview().content(), isText("text of left/c.txt"));

    const auto token = preview().token();
    panel().refresh();
    settle();
    rest();
    EXPECT_EQ(preview().token(), token) << "the same item is not read again";
    temp.file("left/c.txt", "longer than it was before");
    panel().refresh();
    settle();
    rest();
    EXPECT_THAT(preview().content(), isText("longer than it was before"));
}

TEST_F(QuickPreviewTest, dropsWhatComesTooLate) {
    moveTo("a.txt");
    app.perform(KAction::quickLook);
    moveTo("b.txt");
    timers.pass(100ms);
    sizingDisk.runLast();
    main.runAll();
    EXPECT_THAT(preview().content(), isText("text of left/b.txt"));
    settle(); // "a.txt" comes last
    EXPECT_THAT(preview().content(), isText("text of left/b.txt"));
    EXPECT_FALSE(preview().isLoading());

    moveTo("c.txt");
    timers.pass(100ms);
    app.perform(KAction::quickLook);
    settle();
    EXPECT_FALSE(preview().isOpen());
    EXPECT_FALSE(preview().isLoading());
}

TEST_F(QuickPreviewTest, isLeftByEscBeforeTheMarksAndByTab) {
    moveTo("a.txt");
    panel().toggleMark(panel().cursor());
    app.perform(KAction::quickLook);
    settle();
    app.perform(KAction::escape);
    EXPECT_FALSE(preview().isOpen());
    EXPECT_TRUE(panel().marks().isMarked("a.txt"));
    app.perform(KAction::escape);
    EXPECT_THAT(panel().marks().marked(), IsEmpty());

    app.perform(KAction::quickLook);
    app.perform(KAction::switchPanel);
    EXPECT_FALSE(preview().isOpen());
    EXPECT_EQ(app.activeSide(), PanelSide::right);
    app.otherPanel().setCursor(0);
    timers.pass(100ms);
    EXPECT_FALSE(preview().isLoading()) << "nobody follows a panel without a preview";
}

TEST_F(QuickPreviewTest, stepsThroughTheMarkedItemsWhereThereAreAny) {
    moveTo("a.txt");
    app.perform(KAction::quickLook);
    EXPECT_EQ(preview().place().count, 0U);
    preview().step(Direction::forth);
    EXPECT_EQ(panel().cursorItem()->name, "b.txt");
    for (const auto* name : {"folder", "a.txt", "c.txt"})
        panel().toggleMark(*panel().items().rowOf(name));
    EXPECT_EQ(preview().place().number, 0U) << "the cursor is on none of them";
    preview().step(Direction::forth);
    EXPECT_EQ(panel().cursorItem()->name, "c.txt");
    EXPECT_EQ(preview().place().number, 3U);
    EXPECT_EQ(preview().place().count, 3U);
    EXPECT_FALSE(preview().canStep(Direction::forth));
    preview().step(Direction::back);
    preview().step(Direction::back);
    EXPECT_EQ(panel().cursorItem()->name, "folder");
    EXPECT_FALSE(preview().canStep(Direction::back)) << "the way up is no item";
    rest();
    EXPECT_EQ(subject(), "folder");
}

TEST_F(QuickPreviewTest, listsFoldersAndTheWayUp) {
    const auto isFolder = [](std::int64_t folders, std::int64_t others) {
        return VariantWith<PreviewList>(AllOf(Field(&PreviewList::folders, std::optional(folders)),
                                              Field(&PreviewList::files, others)));
    };
    EXPECT_THAT(contentOf("folder"), isFolder(1, 1)) << "without what is hidden";
    EXPECT_THAT(namesOf(std::get<PreviewList>(preview().content()).items),
                testing::ElementsAre("sub", "inner.txt"));
    app.perform(KAction::toggleHidden);
    rest();
    EXPECT_THAT(preview().content(), isFolder(1, 2));
    panel().setCursor(0);
    rest();
    EXPECT_EQ(subject(), std::filesystem::path(temp.url().path()).filename());
    EXPECT_THAT(namesOf(std::get<PreviewList>(preview().content()).items),
                testing::Contains("right"));
}

TEST_F(QuickPreviewTest, looksIntoArchivesAndAtTheirEntries) {
    temp.file("left/z.zip", "exists");
    archives.content["z.zip"] = {
        ManualEntry::file("docs/y.txt", "from the archive"),
        ManualEntry::file("docs/z.bin", std::string(900, 'z')),
        ManualEntry::file("docs/huge.bin", std::string(2000, 'h')),
        ManualEntry::link("way", "docs/y.txt"),
    };
    panel().refresh();
    settle();
    const auto& list = std::get<PreviewList>(contentOf("z.zip"));
    EXPECT_THAT(namesOf(list.items), testing::ElementsAre("docs", "way"));
    EXPECT_FALSE(list.folders) << "of an archive, all files are counted";
    EXPECT_EQ(list.files, 3);

    panel().openItem();
    settle();
    EXPECT_THAT(contentOf("way"), isText("from the archive"));
    EXPECT_THAT(namesOf(std::get<PreviewList>(contentOf("docs")).items),
                testing::ElementsAre("huge.bin", "y.txt", "z.bin"));
    panel().openItem();
    settle();
    EXPECT_THAT(contentOf("z.bin"), isText(std::string(900, 'z')));
    EXPECT_THAT(contentOf("huge.bin"), isNothing("příliš velký"));
}

TEST_F(QuickPreviewTest, saysWhatCannotBeRead) {
    ASSERT_EQ(mkfifo(temp.path("left/pipe").c_str(), 0600), 0);
    temp.link("left/to-pipe", "pipe");
    temp.link("left/to-nothing", "nowhere");
    temp.file("left/picture", "\x89PNG\r\n\x1A\n and then nothing");
    panel().refresh();
    settle();
    EXPECT_THAT(contentOf("pipe"), VariantWith<PreviewNothing>(Field(&PreviewNothing::reason, "")))
        << "and nobody waits for who writes into it";
    EXPECT_THAT(contentOf("to-pipe"),
                VariantWith<PreviewNothing>(Field(&PreviewNothing::reason, "")));
    EXPECT_THAT(contentOf("to-nothing"), isNothing(quoted("to-nothing") + " nejde přečíst: "));
    EXPECT_THAT(contentOf("picture"), isNothing("Nejde to."));
    EXPECT_THAT(previews.asked, testing::ElementsAre(DecodedKind::picture));
    previews.answer = DecodedPicture{.width = 1, .height = 1, .pixels = std::vector<std::byte>(4)};
    moveTo("pipe");
    rest();
    EXPECT_THAT(contentOf("picture"),
                VariantWith<DecodedPicture>(Field(&DecodedPicture::width, 1)));
}

TEST_F(QuickPreviewTest, informationKnowsMoreThanTheRow) {
    temp.link("left/to-folder", "folder");
    panel().refresh();
    settle();
    moveTo("folder");
    app.perform(KAction::info);
    EXPECT_TRUE(app.itemDetails().isCounting);
    settle();
    EXPECT_FALSE(app.itemDetails().isCounting);
    ASSERT_TRUE(app.itemDetails().content);
    EXPECT_EQ(app.itemDetails().content->files, 2);
    EXPECT_EQ(app.itemDetails().content->folders, 1);
    app.copyInfoPath();
    EXPECT_EQ(clipboard.content, temp.path("left/folder"));

    app.closeDialog();
    moveTo("to-folder");
    app.perform(KAction::info);
    settle();
    ASSERT_TRUE(app.itemDetails().link);
    EXPECT_EQ(app.itemDetails().link->path, "folder");
    EXPECT_FALSE(app.itemDetails().content) << "a link is not its target";

    app.closeDialog();
    moveTo("folder");
    app.perform(KAction::info);
    app.closeDialog();
    settle();
    EXPECT_FALSE(app.itemDetails().content) << "nobody wants to know any more";
}

} // namespace fennik::test
