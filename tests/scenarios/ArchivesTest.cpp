#include "tests/scenarios/Scenario.h"

#include <filesystem>
#include <functional>
#include <future>
#include <variant>

namespace fennik::test {

namespace {

using app::Outcome;
using app::PackAnswer;
using app::Toast;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class ArchivesScenario : public Scenario {
protected:
    ArchivesScenario() {
        for (const auto* name : {"left/tree", "right"})
            temp.folder(name);
        temp.file("left/a.zip", "packed");
        temp.file("left/b.tar.gz", "packed");
        temp.file("left/report.txt", "text");
        archives.content["a.zip"] = {ManualEntry::file("docs/x.txt", "xxxx"),
                                     ManualEntry::file("docs/y.txt", "yy"),
                                     ManualEntry::file("z.txt", "zzz")};
        archives.content["b.tar.gz"] = {ManualEntry::file("w.txt", "w")};
        startAt("left", "right");
    }
    void open(std::string_view name) {
        moveTo(name);
        press("return");
    }
    /// Opens an archive that cannot be read without a password; `answer` says what the user does.
    void openLocked(std::string_view name, const std::function<void()>& answer) {
        moveTo(name);
        pressOnly("return");
        const auto worker = std::async(std::launch::async, [this] { disk.runAll(); });
        while (password() == nullptr) {
            ASSERT_TRUE(main.await());
            main.runAll();
        }
        answer();
        worker.wait();
        settle();
    }
    void extractTo(const std::string& target, bool ownFolder = false) {
        app().confirmExtract(target, ownFolder);
        settleAll();
    }
    void answerPack(PackAnswer answer) {
        app().packAnswerChanged(answer);
        timers.pass(std::chrono::milliseconds(120));
        settle();
    }
    std::string refusal() {
        return app().outcome().kind == Outcome::Kind::refused ? app().outcome().sentence : "";
    }
};

} // namespace

// Inside

TEST_F(ArchivesScenario, keysLeadInAndOutAndWhatWouldChangeTheArchiveSaysSo) {
    EXPECT_FALSE(app().obstacle(app::KAction::move));
    open("a.zip");
    EXPECT_THAT(names(), ElementsAre("..", "docs", "z.txt"));
    mark({"docs"});
    for (const auto* combo : {"f6", "shift+f6", "f7", "f8", "opt+f5", "cmd+v"}) {
        press(combo);
        EXPECT_EQ(takeToast(), "Archiv je jen pro čtení.") << combo;
        EXPECT_FALSE(app().dialog()) << combo;
    }
    press("cmd+c");
    EXPECT_EQ(takeToast(), "Z archivu nejde nic dát do schránky, nejdřív to rozbalte.");
    EXPECT_THAT(clipboard.held.paths, IsEmpty());
    press("ctrl+shift+space");
    EXPECT_EQ(takeToast(), "Velikosti složek v archivu jsou spočítané hned.");
    active().unmarkAll();
    moveTo("z.txt");
    press("opt+cmd+c");
    EXPECT_EQ(clipboard.content, temp.path("left/a.zip/z.txt"));
    open("z.txt");
    EXPECT_EQ(takeToast(), "„z.txt“ je soubor a ty tato verze Fennika ještě neotvírá.");
    press("delete");
    EXPECT_EQ(underCursor(), "a.zip");

    temp.file("left/broken.zip", "x");
    press("ctrl+r");
    open("broken.zip");
    EXPECT_EQ(toast(), "Archiv nejde otevřít: neznámý formát");
    EXPECT_EQ(app().toast()->kind, Toast::Kind::error);
}

TEST_F(ArchivesScenario, anArchiveSaysHowManyOfItsEntriesItDoesNotShow) {
    auto refused = ManualEntry::file("../out", "x");
    refused.header.isRefused = true;
    auto& entries = archives.content["b.tar.gz"];
    entries.insert(entries.end(), 2, refused);
    open("b.tar.gz");
    EXPECT_THAT(names(), ElementsAre("..", "w.txt"));
    EXPECT_EQ(takeToast(), "Archiv obsahuje 2 položky, které nejde ukázat.");
    press("ctrl+r");
    EXPECT_EQ(takeToast(), "") << "once is enough";
}

TEST_F(ArchivesScenario, anArchiveInTheOtherPanelIsNoTarget) {
    open("a.zip");
    press("tab");
    temp.file("right/file");
    press("ctrl+r");
    moveTo("file");
    for (const auto* combo : {"f5", "f6"}) {
        press(combo);
        EXPECT_EQ(takeToast(), "Do archivu nejde nic přidat, je jen pro čtení.") << combo;
        EXPECT_FALSE(app().dialog());
    }
    const auto file = FileUrl(temp.path("right/file"));
    EXPECT_EQ(app().dropObstacle({file}, other().location()),
              "Do archivu nejde nic přidat, je jen pro čtení.");
    EXPECT_FALSE(app().dropObstacle({file}, other().folder()));
    press("opt+f5");
    EXPECT_EQ(dialog<app::PackDialog>().other, std::nullopt);
}

TEST_F(ArchivesScenario, theNextRunFindsTheFolderWithTheCursorOnTheArchive) {
    open("a.zip");
    open("docs");
    restart();
    EXPECT_EQ(path(), temp.path("left"));
    EXPECT_FALSE(active().archive());
    EXPECT_EQ(underCursor(), "a.zip");
}

// Extraction

TEST_F(ArchivesScenario, markedEntriesAreTakenOutAndUndoBringsThemToTheTrash) {
    open("a.zip");
    mark({"docs", "z.txt"});
    press("f5");
    const auto& asked = dialog<app::ExtractDialog>();
    EXPECT_THAT(asked.selection, ElementsAre("docs", "z.txt"));
    EXPECT_THAT(asked.archives, ElementsAre(FileUrl(temp.path("left/a.zip"))));
    EXPECT_EQ(asked.browse->index, active().archive()->index);
    EXPECT_EQ(asked.target, temp.path("right"));
    EXPECT_EQ(asked.knownBytes, 9);
    EXPECT_EQ(app().outcome().sentence, "2 položky půjdou do existující složky „right“.");
    app().dialogTextChanged("a.zip");
    timers.pass(std::chrono::milliseconds(120));
    settle();
    EXPECT_EQ(refusal(), "„a.zip“ není složka.") << "relative paths begin in the folder";
    extractTo("a.zip");
    EXPECT_TRUE(app().dialog());
    extractTo("../right/new");

    EXPECT_FALSE(app().dialog());
    EXPECT_EQ(content("right/new/docs/x.txt"), "xxxx");
    EXPECT_EQ(content("right/new/z.txt"), "zzz");
    EXPECT_THAT(marked(), IsEmpty());
    EXPECT_EQ(toast(), "Rozbaleno: 2 položky");
    EXPECT_EQ(app().undoTitle(), "Rozbalení „a.zip“");
    EXPECT_THAT(namesOf(other().items()), ElementsAre("..", "new"));
    press("cmd+z");
    settleAll();
    EXPECT_FALSE(std::filesystem::exists(temp.path("right/new")));
}

TEST_F(ArchivesScenario, archivesAreUnpackedWholeEachIntoAFolderOfItsOwn) {
    moveTo("report.txt");
    press("opt+f9");
    EXPECT_EQ(takeToast(), "Není co rozbalit.");
    mark({"a.zip", "b.tar.gz", "report.txt"});
    press("opt+f9");
    const auto& asked = dialog<app::ExtractDialog>();
    EXPECT_THAT(asked.archives, SizeIs(2));
    EXPECT_EQ(asked.browse, nullptr);
    EXPECT_TRUE(asked.ownFolder);
    extractTo(temp.path("right"), true);
    EXPECT_EQ(content("right/a/docs/x.txt"), "xxxx");
    EXPECT_EQ(content("right/b/w.txt"), "w");
    EXPECT_THAT(marked(), ElementsAre("report.txt"));
    EXPECT_EQ(app().undoTitle(), "Rozbalení 2 archivů");

    active().unmarkAll();
    moveTo("b.tar.gz");
    press("opt+f9");
    extractTo(temp.path("right"), false);
    EXPECT_EQ(content("right/w.txt"), "w");
    EXPECT_EQ(toast(), "Rozbaleno: „b.tar.gz“");
    press("opt+f9");
    EXPECT_FALSE(dialog<app::ExtractDialog>().ownFolder) << "the choice is remembered";
    extractTo(temp.path("right"), false);
    ASSERT_NE(clash(), nullptr) << "names that are taken are asked about as ever";
    EXPECT_EQ(clash()->job.kind, TransferKind::extract);
    app().answerConflict({.choice = ConflictChoice::rename});
    settleAll();
    EXPECT_EQ(content("right/w 2.txt"), "w");
}

TEST_F(ArchivesScenario, anArchiveThatWasReplacedIsNotTakenForTheOneThatIsShown) {
    open("a.zip");
    moveTo("z.txt");
    press("f5");
    temp.file("left/a.zip", "another one");
    extractTo(temp.path("right"));
    EXPECT_FALSE(std::filesystem::exists(temp.path("right/z.txt")));
    EXPECT_EQ(app().toast()->kind, Toast::Kind::error);
}

TEST_F(ArchivesScenario, theWorkerWaitsForThePasswordAndThePanelRemembersIt) {
    archives.passwords["a.zip"] = "slon";
    moveTo("a.zip");
    press("opt+f9");
    extractTo(temp.path("right"));
    ASSERT_NE(password(), nullptr);
    EXPECT_EQ(password()->archive.path(), temp.path("left/a.zip"));
    EXPECT_EQ(password()->wasWrong, app::WasWrong::no);
    EXPECT_EQ(app().jobs().back().state, JobSnapshot::State::askingConflict);
    EXPECT_EQ(password()->encryption, "AES-256");
    app().answerPassword("mrož");
    settle();
    ASSERT_NE(password(), nullptr);
    EXPECT_EQ(password()->wasWrong, app::WasWrong::yes);
    app().perform(app::KAction::newFolder);
    EXPECT_NE(password(), nullptr) << "nothing takes the place of what a worker waits for";
    app().answerPassword("slon");
    EXPECT_EQ(app().dialog()->index(), app::Dialog(app::NewFolderDialog()).index());
    app().closeDialog();
    settleAll();
    EXPECT_EQ(content("right/z.txt"), "zzz");

    for (const auto* way : {"dialog", "job"}) {
        press("opt+f9");
        extractTo(temp.path("right/second"));
        ASSERT_NE(password(), nullptr) << "no archive is open in a panel";
        if (way == std::string("dialog"))
            app().closeDialog();
        else
            app().cancelJob(app().jobs().back().id);
        EXPECT_FALSE(app().dialog());
        settleAll();
        EXPECT_EQ(app().jobs().back().state, JobSnapshot::State::cancelled) << way;
        EXPECT_FALSE(std::filesystem::exists(temp.path("right/second/z.txt")));
    }

    openLocked("a.zip", [&] { app().answerPassword("slon"); });
    moveTo("z.txt");
    press("f5");
    extractTo(temp.path("right/third"));
    EXPECT_EQ(password(), nullptr) << "it is known as long as the archive is open";
    EXPECT_EQ(content("right/third/z.txt"), "zzz");
}

TEST_F(ArchivesScenario, aClosingWindowLeavesNobodyWaitingForAPassword) {
    archives.passwords["a.zip"] = "slon";
    openLocked("a.zip", [&] { app().stopJobs(); });
    EXPECT_FALSE(app().dialog());
    EXPECT_FALSE(active().archive());
    EXPECT_EQ(toast(), "");
}

// Packing

TEST_F(ArchivesScenario, itemsArePackedUnderANameThatIsFree) {
    moveTo("report.txt");
    press("opt+f5");
    EXPECT_EQ(dialog<app::PackDialog>().stem, "report");
    app().closeDialog();
    mark({"tree", "report.txt"});
    press("opt+f5");
    const auto asked = dialog<app::PackDialog>();
    EXPECT_EQ(asked.stem, "left");
    EXPECT_EQ(asked.here.path(), temp.path("left"));
    EXPECT_EQ(asked.other->path(), temp.path("right"));
    EXPECT_EQ(asked.knownBytes, 4);
    EXPECT_TRUE(asked.hasUnsizedFolders);
    EXPECT_EQ(app().outcome().kind, Outcome::Kind::none);

    answerPack({.name = "a.zip"});
    EXPECT_EQ(refusal(), "„a.zip“ už ve složce je.");
    answerPack({.name = ".zip"});
    EXPECT_EQ(refusal(), "Zadejte název.");
    answerPack({.name = "a:b.zip"});
    EXPECT_EQ(refusal(), "Název nesmí obsahovat dvojtečku.");
    answerPack({.name = "a/b.zip"});
    EXPECT_EQ(refusal(), "Název nesmí obsahovat „/“.");
    answerPack({.name = "x.7z", .options = {.format = ArchiveFormat::sevenZip, .password = "p"}});
    EXPECT_EQ(refusal(), "Heslo umí jen formát ZIP.");
    app().confirmPack({.name = "a.zip"});
    settleAll();
    EXPECT_TRUE(app().dialog());
    EXPECT_THAT(packer.packed, IsEmpty());
    answerPack({.name = "a.zip", .place = PackAnswer::Place::other});
    EXPECT_EQ(refusal(), "") << "it is free in the other folder";

    app().confirmPack({.name = "n.zip",
                       .place = PackAnswer::Place::other,
                       .options = {.level = 9, .password = "heslo"}});
    settleAll();
    EXPECT_FALSE(app().dialog());
    ASSERT_THAT(packer.packed, SizeIs(1));
    EXPECT_THAT(packer.packed[0].sources, ElementsAre(FileUrl(temp.path("left/tree")),
                                                      FileUrl(temp.path("left/report.txt"))));
    EXPECT_EQ(packer.packed[0].destination.path(), temp.path("right/n.zip"));
    EXPECT_EQ(packer.packed[0].options.password, "heslo");
    EXPECT_EQ(app().undoTitle(), "Balení „n.zip“");
    EXPECT_EQ(toast(), "Zabaleno: „n.zip“");
    EXPECT_THAT(marked(), IsEmpty());
    EXPECT_THAT(namesOf(other().items()), ElementsAre("..", "n.zip"));
}

TEST_F(ArchivesScenario, aFailedPackingIsToldAndTheMarksStay) {
    temp.folder("empty");
    startAt("empty", "right");
    press("opt+f5");
    EXPECT_EQ(takeToast(), "Není co zabalit.");
    startAt("left", "left/tree");
    mark({"tree"});
    press("opt+f5");
    answerPack({.name = "inner.zip", .place = PackAnswer::Place::other});
    EXPECT_EQ(refusal(), "Archiv nemůže přepsat soubor, který se do něj balí.");
    packer.failure = "„tree“ nejde přečíst: Adresář není prázdný.";
    app().confirmPack({.name = "x.zip"});
    settleAll();
    EXPECT_EQ(app().jobs().back().state, JobSnapshot::State::failed);
    EXPECT_THAT(marked(), ElementsAre("tree"));
    EXPECT_EQ(app().toast()->kind, Toast::Kind::error);
}

// All together

TEST_F(ArchivesScenario, whatIsPackedOpensAndComesOutAgainAlsoOutOfAnArchiveInside) {
    packer.isReal = true;
    temp.file("left/tree/příliš.txt", "žluťoučký");
    moveTo("tree");
    press("opt+f5");
    app().confirmPack({.name = "vnitřní.tar.gz", .options = {.format = ArchiveFormat::tarGz}});
    settleAll();
    EXPECT_EQ(takeToast(), "Zabaleno: „vnitřní.tar.gz“");
    moveTo("vnitřní.tar.gz");
    press("opt+f5");
    app().confirmPack({.name = "vnější.zip", .place = PackAnswer::Place::other});
    settleAll();

    press("tab");
    open("vnější.zip");
    open("vnitřní.tar.gz");
    ASSERT_TRUE(active().archive());
    EXPECT_EQ(active().archive()->index->formatLabel(), "tar.gz");
    open("tree");
    EXPECT_EQ(active().location().path(), temp.path("right/vnější.zip/vnitřní.tar.gz/tree"));
    moveTo("příliš.txt");
    press("f5");
    // The job keeps the copy that is shown no more.
    app().perform(app::KAction::parent);
    app().perform(app::KAction::parent);
    extractTo(temp.path("right/ven"));
    EXPECT_EQ(content("right/ven/příliš.txt"), "žluťoučký");
    EXPECT_EQ(app().undoTitle(), "Rozbalení „vnitřní.tar.gz“");

    std::filesystem::last_write_time(temp.path("right/vnější.zip"), {});
    open("vnitřní.tar.gz");
    EXPECT_THAT(toast(), testing::HasSubstr("se mezitím změnil"));
    EXPECT_EQ(active().archive()->inner, "");
}

} // namespace fennik::test
