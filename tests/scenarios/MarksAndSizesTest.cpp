#include "tests/scenarios/Scenario.h"

#include <filesystem>

namespace fennik::test {

namespace {

using app::SettingKeys::maskHistory;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

class MarksScenario : public Scenario {
protected:
    MarksScenario() {
        temp.folder("left/d");
        temp.file("left/d/big", std::string(1000, 'x'));
        temp.folder("left/e");
        temp.file("left/a.txt", "a");
        temp.file("left/b.txt", "bb");
        temp.file("left/č.md", "ccc");
        start(temp.path("left"));
    }
    void applyMask(std::string_view combo, Marking marking, const std::string& mask) {
        press(combo);
        ASSERT_TRUE(app().dialog());
        EXPECT_EQ(std::get<app::MaskDialog>(*app().dialog()).marking, marking);
        app().applyMask(marking, mask);
        EXPECT_FALSE(app().dialog());
    }
};

} // namespace

TEST_F(MarksScenario, marksFollowTheKeys) {
    EXPECT_THAT(names(), ElementsAre("..", "d", "e", "a.txt", "b.txt", "č.md"));
    press("help");
    EXPECT_THAT(marked(), IsEmpty()) << "the way up is never marked";
    EXPECT_EQ(underCursor(), "d");
    press("help");
    press("shift+down");
    EXPECT_THAT(marked(), UnorderedElementsAre("d", "e"));
    EXPECT_EQ(underCursor(), "a.txt");
    press("shift+up");
    press("shift+up");
    EXPECT_THAT(marked(), UnorderedElementsAre("d", "e", "a.txt")) << "these only ever mark";
    EXPECT_EQ(underCursor(), "d");
    press("help");
    EXPECT_THAT(marked(), UnorderedElementsAre("e", "a.txt"));

    press("cmd+opt+i");
    EXPECT_THAT(marked(), UnorderedElementsAre("d", "b.txt", "č.md"));
    press("cmd+a");
    EXPECT_THAT(marked(), SizeIs(5));
    EXPECT_EQ(active().markTotals(), (MarkTotals{.count = 5, .bytes = 6, .unsizedFolders = 2}));
    press("cmd+opt+a");
    EXPECT_THAT(marked(), IsEmpty());
    EXPECT_EQ(active().markTotals(), MarkTotals());

    moveTo("č.md");
    press("help");
    EXPECT_EQ(underCursor(), "č.md") << "the last row has none below it";
}

TEST_F(MarksScenario, whatIsMarkedStaysMarkedUnderItsName) {
    moveTo("b.txt");
    press("help");
    press("ctrl+opt+cmd+3");
    temp.file("left/0.txt");
    std::filesystem::remove(temp.path("left/a.txt"));
    press("ctrl+r");
    EXPECT_THAT(marked(), ElementsAre("b.txt"));
    ASSERT_THAT(active().targets(), SizeIs(1));
    EXPECT_EQ(active().items().view(active().targets().front()).name, "b.txt");
    std::filesystem::remove(temp.path("left/b.txt"));
    press("ctrl+r");
    EXPECT_THAT(marked(), IsEmpty());
    EXPECT_EQ(active().markTotals(), MarkTotals());
}

TEST_F(MarksScenario, masksMarkUnmarkAndAreRemembered) {
    applyMask("numplus", Marking::mark, "?.TXT;*.md");
    EXPECT_THAT(marked(), UnorderedElementsAre("a.txt", "b.txt", "č.md"));
    applyMask("cmd+opt+-", Marking::unmark, "b*");
    EXPECT_THAT(marked(), UnorderedElementsAre("a.txt", "č.md"));
    applyMask("numminus", Marking::unmark, "?.TXT;*.md");
    EXPECT_THAT(app().maskHistory(), ElementsAre("?.TXT;*.md", "b*"));
    applyMask("cmd+opt+=", Marking::mark, "*/");
    EXPECT_THAT(marked(), UnorderedElementsAre("d", "e"));

    for (const std::string mask : {"1", "2", "3", "4", "5", "6"})
        applyMask("numplus", Marking::mark, mask);
    EXPECT_THAT(app().maskHistory(), ElementsAre("6", "5", "4", "3", "2"));
    restart();
    EXPECT_THAT(app().maskHistory(), ElementsAre("6", "5", "4", "3", "2"));
}

TEST_F(MarksScenario, oddMasksMatchWhatTheySay) {
    for (const auto& mask : {std::string(";;"), std::string("["), std::string(10'000, '['),
                             std::string(10'000, ';'), std::string(10'000, '?')})
        applyMask("numplus", Marking::mark, mask);
    EXPECT_THAT(marked(), IsEmpty());
    applyMask("numplus", Marking::mark, std::string(5'000, '*'));
    EXPECT_THAT(marked(), SizeIs(5));
}

TEST_F(MarksScenario, aFolderIsMarkedAndSizedWithOneKey) {
    moveTo("d");
    pressOnly("ctrl+space");
    EXPECT_THAT(marked(), ElementsAre("d"));
    EXPECT_TRUE(active().sizing().contains("d"));
    EXPECT_EQ(active().markTotals(), (MarkTotals{.count = 1, .unsizedFolders = 1}));
    settle();
    EXPECT_EQ(active().folderSizes().at("d"), 1000);
    EXPECT_EQ(active().markTotals(), (MarkTotals{.count = 1, .bytes = 1000}));
    EXPECT_THAT(active().sizing(), IsEmpty());
    press("opt+space");
    EXPECT_THAT(marked(), ElementsAre("d")) << "a second press unmarks nothing";
    moveTo("a.txt");
    press("opt+space");
    EXPECT_THAT(marked(), UnorderedElementsAre("d", "a.txt"));
    moveTo("..");
    press("opt+space");
    EXPECT_THAT(marked(), SizeIs(2));
}

TEST_F(MarksScenario, allFoldersAreSizedAndOrderedByIt) {
    temp.folder("left/Balík.app/inner");
    temp.file("left/Balík.app/inner/file", std::string(10, 'x'));
    temp.link("left/link", "d");
    press("ctrl+r");
    press("ctrl+opt+cmd+3");
    moveTo("e");
    pressOnly("ctrl+shift+space");
    EXPECT_EQ(toast(), "Počítám velikosti složek… (Esc zastaví)");
    EXPECT_THAT(active().sizing(), UnorderedElementsAre("d", "e", "Balík.app"));
    settle();
    EXPECT_EQ(active().folderSizes().at("d"), 1000);
    EXPECT_EQ(active().folderSizes().at("e"), 0);
    EXPECT_EQ(active().folderSizes().at("Balík.app"), 10);
    EXPECT_EQ(active().folderSizes().count("link"), 0U);
    const auto row = [this](const char* name) { return *active().items().rowOf(name); };
    EXPECT_LT(row("d"), row("e"));
    EXPECT_EQ(underCursor(), "e");

    // Where there is no folder, there is nothing to be said about sizes.
    takeToast();
    moveTo("e");
    press("return");
    press("shift+opt+space");
    EXPECT_EQ(toast(), "");
}

TEST_F(MarksScenario, escapeStopsOneThingAtATime) {
    moveTo("a.txt");
    press("help");
    pressOnly("ctrl+shift+space");
    takeToast();
    clipboard.content = temp.path("nowhere");
    pressOnly("cmd+shift+v");
    disk.runAll();
    main.runAll();
    ASSERT_TRUE(active().error());
    pressOnly("cmd+shift+v");

    pressOnly("escape");
    EXPECT_FALSE(active().loading());
    EXPECT_TRUE(active().error());
    pressOnly("escape");
    EXPECT_FALSE(active().error());
    disk.runAll();
    main.runAll();
    EXPECT_FALSE(active().sizing().empty());
    pressOnly("escape");
    EXPECT_EQ(toast(), "Výpočet velikostí zastaven");
    EXPECT_THAT(active().sizing(), IsEmpty());
    EXPECT_THAT(marked(), ElementsAre("a.txt"));
    settle();
    EXPECT_THAT(active().folderSizes(), IsEmpty()) << "what was stopped brings nothing";
    press("escape");
    EXPECT_THAT(marked(), IsEmpty());
    EXPECT_EQ(path(), temp.path("left"));
}

} // namespace fennik::test
