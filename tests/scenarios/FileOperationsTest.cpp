#include "tests/scenarios/Scenario.h"

#include <filesystem>
#include <future>
#include <sys/stat.h>
#include <variant>

namespace fennik::test {

namespace {

using app::AskNextTime;
using app::Outcome;
using app::PanelSide;
using app::Toast;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;

class FileOperationsScenario : public Scenario {
protected:
    FileOperationsScenario() {
        for (const auto* name : {"left/tree/inner", "right"})
            temp.folder(name);
        temp.file("left/a.txt", "aaaa");
        temp.file("left/b.txt", "bb");
        temp.file("left/tree/inner/deep.txt", "deep");
        startAt("left", "right");
    }
    void confirmTransfer(const std::string& target) {
        app().confirmTransfer(target);
        settleAll();
    }
    /// Copies to the other panel what the action works on.
    void transfer(std::string_view combo) {
        press(combo);
        confirmTransfer(dialog<app::TransferDialog>().target);
    }
    void answer(ConflictChoice choice, bool applyToAll = false) {
        app().answerConflict({choice, applyToAll});
        settleAll();
    }
    void undo() {
        press("cmd+z");
        settleAll();
    }

    bool exists(std::string_view name) {
        return std::filesystem::exists(std::filesystem::symlink_status(temp.path(name)));
    }
    std::vector<std::string> names(std::string_view folder) {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(temp.path(folder)))
            found.push_back(entry.path().filename());
        return found;
    }
    /// Something that cannot be copied.
    void makeSocket(std::string_view name) {
        ASSERT_EQ(mknod(temp.path(name).c_str(), S_IFSOCK | 0600, 0), 0);
        press("ctrl+r");
    }
    Toast::Kind toastKind() { return app().toast().value().kind; }
};

} // namespace

TEST_F(FileOperationsScenario, marksAreCopiedToTheOtherPanelAndUndoBringsTheCopiesToTheTrash) {
    mark({"a.txt", "tree"});
    press("f5");
    const auto& asked = dialog<app::TransferDialog>();
    EXPECT_EQ(asked.kind, TransferKind::copy);
    EXPECT_THAT(asked.sources,
                ElementsAre(FileUrl(temp.path("left/tree")), FileUrl(temp.path("left/a.txt"))));
    EXPECT_EQ(asked.target, temp.path("right"));
    EXPECT_EQ(asked.knownBytes, 4);
    EXPECT_TRUE(asked.hasUnsizedFolders);
    EXPECT_EQ(app().outcome().sentence, "2 položky půjdou do existující složky „right“.");
    confirmTransfer(temp.path("right"));

    EXPECT_FALSE(app().dialog());
    EXPECT_EQ(content("right/a.txt"), "aaaa");
    EXPECT_EQ(content("right/tree/inner/deep.txt"), "deep");
    EXPECT_EQ(content("left/a.txt"), "aaaa");
    EXPECT_THAT(marked(), IsEmpty());
    EXPECT_THAT(namesOf(other().items()), ElementsAre("..", "tree", "a.txt"));
    EXPECT_EQ(toast(), "Zkopírováno: 2 položky");
    EXPECT_TRUE(app().toast()->undoable);
    EXPECT_EQ(app().undoTitle(), "Kopírování 2 položek");

    undo();
    EXPECT_THAT(names("right"), IsEmpty());
    EXPECT_EQ(content("trash/tree/inner/deep.txt"), "deep") << "nothing is destroyed";
    EXPECT_EQ(toast(), "Vráceno: Kopírování 2 položek");
    undo();
    EXPECT_EQ(toast(), "Není co vrátit.");
}

TEST_F(FileOperationsScenario, theItemUnderTheCursorIsMovedAndRenamedOnTheWay) {
    moveTo("b.txt");
    press("f6");
    app().dialogTextChanged("../right/new/c.txt");
    timers.pass(std::chrono::milliseconds(119));
    settle();
    EXPECT_EQ(app().outcome().kind, Outcome::Kind::existing) << "the user is still typing";
    timers.pass(std::chrono::milliseconds(1));
    settle();
    EXPECT_EQ(app().outcome().sentence,
              "Složka „new“ se vytvoří, přesun a přejmenování na „c.txt“");
    confirmTransfer("../right/new/c.txt");
    EXPECT_FALSE(exists("left/b.txt"));
    EXPECT_EQ(content("right/new/c.txt"), "bb");
    EXPECT_EQ(toast(), "Přesunuto: „b.txt“");
    undo();
    EXPECT_EQ(content("left/b.txt"), "bb");
    EXPECT_THAT(Scenario::names(), ElementsAre("..", "tree", "a.txt", "b.txt"));
}

TEST_F(FileOperationsScenario, whatIsTypedAfterTheConfirmationWasMeantForSomethingElse) {
    moveTo("a.txt");
    press("f5");
    app().confirmTransfer(temp.path("right"));
    EXPECT_TRUE(app().isConfirming()) << "the dialog takes no more keys";
    app().dialogTextChanged("p");
    settleAll();
    EXPECT_FALSE(app().dialog());
    EXPECT_EQ(content("right/a.txt"), "aaaa");
    EXPECT_FALSE(exists("left/p"));
}

TEST_F(FileOperationsScenario, aTargetThatIsRefusedForTheSameReasonIsRefusedAnew) {
    moveTo("tree");
    press("f5");
    int tellings = 0;
    QObject::connect(&app(), &app::AppModel::changed, [&](app::AppChanges changes) {
        if (changes.testFlag(app::AppChange::outcome) &&
            app().outcome().kind == Outcome::Kind::refused)
            ++tellings;
    });
    for (const auto* target : {"tree", "tree/inner"}) {
        app().dialogTextChanged(target);
        EXPECT_NE(app().outcome().kind, Outcome::Kind::refused) << "not known yet";
        timers.pass(std::chrono::milliseconds(120));
        settle();
        EXPECT_EQ(app().outcome().kind, Outcome::Kind::refused);
    }
    EXPECT_EQ(tellings, 2);
}

TEST_F(FileOperationsScenario, aRefusedTargetKeepsTheDialogAndChangesNothing) {
    moveTo("tree");
    press("f5");
    confirmTransfer(temp.path("left/tree/inner"));
    ASSERT_TRUE(app().dialog());
    EXPECT_EQ(app().outcome().kind, Outcome::Kind::refused);
    EXPECT_EQ(app().outcome().sentence, "„tree“ nejde kopírovat do sebe sama.");
    EXPECT_THAT(names("left/tree/inner"), ElementsAre("deep.txt"));

    // What is true is asked anew when it is confirmed.
    app().dialogTextChanged(temp.path("right/x"));
    confirmTransfer(temp.path("right/x"));
    EXPECT_FALSE(app().dialog());
    EXPECT_TRUE(exists("right/x/inner/deep.txt"));
}

TEST_F(FileOperationsScenario, aFolderWhoseNameNoFieldCanHoldIsReachedAllTheSame) {
    for (const std::string name : {"right ", "ri\nght", "right\xFF"}) {
        temp.folder(name);
        startAt("left", name);
        moveTo("a.txt");
        transfer("f5");
        EXPECT_EQ(content(name + "/a.txt"), "aaaa");
    }
}

TEST_F(FileOperationsScenario, aTransferThatIsGivenUpWhileItsTargetIsExaminedDoesNotHappen) {
    moveTo("a.txt");
    press("f5");
    app().confirmTransfer(temp.path("right"));
    app().closeDialog();
    settleAll();
    EXPECT_THAT(names("right"), IsEmpty());
    EXPECT_THAT(app().jobs(), IsEmpty());
}

TEST_F(FileOperationsScenario, withNothingUnderTheCursorThereIsNothingToDo) {
    moveTo("..");
    for (const auto& [action, text] : {std::pair{app::KAction::copy, "Není co kopírovat."},
                                       {app::KAction::move, "Není co přesunout."},
                                       {app::KAction::trash, "Není co přesunout do Koše."},
                                       {app::KAction::rename, "Není co přejmenovat."},
                                       {app::KAction::copyToClipboard, "Není co kopírovat."},
                                       {app::KAction::copyPath, "Není co kopírovat."}}) {
        app().perform(action);
        EXPECT_EQ(takeToast(), text);
        EXPECT_FALSE(app().dialog());
    }
}

TEST_F(FileOperationsScenario, whatFailedKeepsItsMarkSoThatItCanBeTriedAgain) {
    makeSocket("left/socket");
    mark({"a.txt", "socket", "b.txt"});
    transfer("f5");
    EXPECT_THAT(names("right"), UnorderedElementsAre("a.txt", "b.txt"));
    EXPECT_THAT(marked(), ElementsAre("socket"));
    EXPECT_EQ(toast(), "Hotovo, 1 chyb");
    EXPECT_EQ(toastKind(), Toast::Kind::error);
    EXPECT_EQ(app().toast()->action, Toast::Action::operations);
    ASSERT_EQ(app().jobs().size(), 1U);
    EXPECT_EQ(app().jobs().front().errors->size(), 1U);
}

TEST_F(FileOperationsScenario, theQueueHidesItselfAfterACleanBatchAndLaterAfterAFailedOne) {
    app().perform(app::KAction::operations);
    EXPECT_TRUE(app().showsOperations());
    moveTo("a.txt");
    transfer("f5");
    timers.pass(std::chrono::milliseconds(1900));
    EXPECT_TRUE(app().showsOperations());
    timers.pass(std::chrono::milliseconds(200));
    settle();
    EXPECT_FALSE(app().showsOperations());
    EXPECT_THAT(app().jobs(), IsEmpty());

    makeSocket("left/socket");
    moveTo("socket");
    transfer("f5");
    app().setShowsOperations(true);
    timers.pass(std::chrono::seconds(10));
    EXPECT_TRUE(app().showsOperations()) << "somebody wants to read it";
    moveTo("tree");
    transfer("f5");
    timers.pass(std::chrono::seconds(4));
    EXPECT_TRUE(app().showsOperations());
    timers.pass(std::chrono::seconds(2));
    settle();
    EXPECT_FALSE(app().showsOperations());
    EXPECT_EQ(app().jobs().size(), 2U) << "what failed can still be read";

    store.setValue("autoHideQueue", false);
    app().setShowsOperations(true);
    moveTo("b.txt");
    transfer("f5");
    timers.pass(std::chrono::seconds(10));
    EXPECT_TRUE(app().showsOperations());
}

TEST_F(FileOperationsScenario, everyAnswerToAClashDoesWhatItSays) {
    temp.file("right/a.txt", "old");
    moveTo("a.txt");
    transfer("f5");
    ASSERT_TRUE(clash());
    EXPECT_EQ(clash()->conflict.destination.path(), temp.path("right/a.txt"));
    EXPECT_EQ(clash()->conflict.destinationSize, 3);
    EXPECT_EQ(clash()->job.title, "Kopírování „a.txt“");
    answer(ConflictChoice::rename);
    EXPECT_EQ(content("right/a 2.txt"), "aaaa");
    EXPECT_EQ(content("right/a.txt"), "old");

    transfer("f5");
    answer(ConflictChoice::skip);
    EXPECT_EQ(content("right/a.txt"), "old");
    EXPECT_EQ(toast(), "Hotovo, přeskočeno 1");
    EXPECT_FALSE(app().toast()->undoable) << "the last entry is another job's";

    transfer("f5");
    answer(ConflictChoice::overwrite);
    EXPECT_EQ(content("right/a.txt"), "aaaa");
    EXPECT_EQ(content("trash/a.txt"), "old");
    undo();
    EXPECT_EQ(content("right/a.txt"), "old");

    std::filesystem::last_write_time(temp.path("right/a.txt"),
                                     std::filesystem::file_time_type::clock::now() +
                                         std::chrono::hours(1));
    transfer("f5");
    answer(ConflictChoice::overwriteOlder);
    EXPECT_EQ(content("right/a.txt"), "old");

    transfer("f5");
    app().closeDialog();
    settleAll();
    EXPECT_EQ(content("right/a.txt"), "old");
    EXPECT_EQ(app().jobs().back().state, JobSnapshot::State::cancelled);
}

TEST_F(FileOperationsScenario, theNextClashIsShownWithoutTheDialogClosingInBetween) {
    for (const auto* name : {"right/a.txt", "right/b.txt"})
        temp.file(name, "old");
    mark({"a.txt", "b.txt"});
    transfer("f6");
    ASSERT_TRUE(clash());
    bool wasClosed = false;
    QObject::connect(&app(), &app::AppModel::changed, [&] { wasClosed |= !app().dialog(); });
    app().answerConflict({.choice = ConflictChoice::skip});
    settle();
    ASSERT_TRUE(clash());
    EXPECT_EQ(clash()->conflict.source.path(), temp.path("left/b.txt"));
    EXPECT_FALSE(wasClosed);
    answer(ConflictChoice::overwrite, true);
    EXPECT_FALSE(app().dialog());
    EXPECT_EQ(content("right/b.txt"), "bb");
    EXPECT_EQ(content("trash/b.txt"), "old");
    EXPECT_EQ(content("left/a.txt"), "aaaa");
}

TEST_F(FileOperationsScenario, aClashTakesThePlaceOfADialogThatComesBackWithItsEntries) {
    temp.file("right/a.txt", "old");
    std::promise<void> gate;
    transfers.execute([opened = gate.get_future().share()] { opened.wait(); });
    moveTo("a.txt");
    pressOnly("f5");
    app().confirmTransfer(temp.path("right"));
    AppFixture::settle();
    pressOnly("f7");
    app().dialogTextChanged("tree");
    gate.set_value();
    settle();
    ASSERT_TRUE(clash());
    EXPECT_EQ(app().outcome().kind, Outcome::Kind::none);

    app().receiveDrop(TransferKind::copy,
                      std::vector<FileUrl>(11, FileUrl(temp.path("left/b.txt"))),
                      FileUrl(temp.path("left/tree")));
    EXPECT_TRUE(clash()) << "nothing takes the place of a clash";
    answer(ConflictChoice::skip);
    EXPECT_EQ(dialog<app::NewFolderDialog>().name, "tree");
    EXPECT_EQ(app().outcome().sentence, "Složka „tree“ už existuje.");
    app().closeDialog();
    EXPECT_EQ(dialog<app::PasteDialog>().sources.size(), 11U) << "what came meanwhile has waited";
    app().closeDialog();
    EXPECT_FALSE(app().dialog());
}

TEST_F(FileOperationsScenario, cancellingTheJobThatAsksAnswersItsClash) {
    temp.file("right/a.txt", "old");
    moveTo("a.txt");
    transfer("f5");
    ASSERT_TRUE(clash());
    app().cancelJob(app().jobs().front().id);
    EXPECT_FALSE(app().dialog());
    settleAll();
    EXPECT_EQ(app().jobs().front().state, JobSnapshot::State::cancelled);
    EXPECT_FALSE(app().hasUnfinishedJobs());
}

TEST_F(FileOperationsScenario, closingTheWindowDuringAClashEndsTheJobsCleanly) {
    temp.file("right/a.txt", "old");
    mark({"a.txt", "b.txt"});
    transfer("f6");
    EXPECT_TRUE(app().hasUnfinishedJobs());
    end();
    EXPECT_EQ(content("left/a.txt"), "aaaa");
    EXPECT_EQ(content("left/b.txt"), "bb");
    EXPECT_EQ(content("right/a.txt"), "old");
}

TEST_F(FileOperationsScenario, aNewFolderIsMadeUnderTheCursorOrTheDialogSaysWhyNot) {
    press("f7");
    EXPECT_EQ(dialog<app::NewFolderDialog>().folder.path(), temp.path("left"));
    EXPECT_EQ(app().outcome().kind, Outcome::Kind::none);
    for (const auto& [name, sentence] : {std::pair{"..", "Zadejte název."},
                                         {"x/a:b", "Název nesmí obsahovat dvojtečku."},
                                         {"tree/inner", "Složka „tree/inner“ už existuje."}}) {
        app().dialogTextChanged(name);
        timers.pass(std::chrono::milliseconds(120));
        settle();
        EXPECT_EQ(app().outcome().sentence, sentence);
        app().confirmNewFolder(name);
        settle();
        ASSERT_TRUE(app().dialog()) << name;
        EXPECT_EQ(app().outcome().sentence, sentence);
    }
    app().dialogTextChanged("tree/x");
    timers.pass(std::chrono::milliseconds(120));
    settle();
    EXPECT_EQ(app().outcome().kind, Outcome::Kind::none);

    app().confirmNewFolder("new/sub");
    settleAll();
    EXPECT_FALSE(app().dialog());
    EXPECT_TRUE(exists("left/new/sub"));
    EXPECT_EQ(underCursor(), "new");
    EXPECT_EQ(toast(), "Vytvořena složka „new/sub“");
    undo();
    EXPECT_FALSE(exists("left/new"));
}

TEST_F(FileOperationsScenario, anItemIsRenamedInItsRowAndTheCursorStaysOnIt) {
    moveTo("a.txt");
    press("f2");
    ASSERT_TRUE(app().renameRequest());
    EXPECT_EQ(app().renameRequest()->name, "a.txt");
    EXPECT_EQ(app().renameRequest()->failure, "");
    app().commitRename("b.txt");
    settle();
    ASSERT_TRUE(app().renameRequest());
    EXPECT_EQ(app().renameRequest()->failure, "„b.txt“ už ve složce je.");
    EXPECT_EQ(content("left/b.txt"), "bb");

    app().commitRename("z.txt");
    settleAll();
    EXPECT_FALSE(app().renameRequest());
    EXPECT_EQ(content("left/z.txt"), "aaaa");
    EXPECT_EQ(underCursor(), "z.txt");
    EXPECT_EQ(app().undoTitle(), "Přejmenování na „z.txt“");
    undo();
    EXPECT_EQ(content("left/a.txt"), "aaaa");
}

TEST_F(FileOperationsScenario, tabRenamesAndGoesOnToTheNextRow) {
    moveTo("a.txt");
    press("f2");
    const auto token = app().renameRequest()->token;
    app().renameNext("z.txt");
    settle();
    ASSERT_TRUE(app().renameRequest());
    EXPECT_EQ(app().renameRequest()->name, "b.txt");
    EXPECT_GT(app().renameRequest()->token, token);
    EXPECT_EQ(underCursor(), "b.txt");
    app().renameNext("b.txt");
    settle();
    EXPECT_EQ(app().renameRequest()->name, "z.txt") << "the same name is left as it is";
    app().renameNext("y.txt");
    settle();
    EXPECT_FALSE(app().renameRequest()) << "there is no further row";
    EXPECT_THAT(names("left"), UnorderedElementsAre("tree", "b.txt", "y.txt"));

    press("f2");
    press("cmd+up");
    EXPECT_FALSE(app().renameRequest()) << "the row is not there any more";
}

TEST_F(FileOperationsScenario, theTrashIsAskedAboutUnlessToldNotTo) {
    mark({"a.txt", "tree"});
    press("f8");
    EXPECT_THAT(dialog<app::TrashDialog>().items,
                ElementsAre(FileUrl(temp.path("left/tree")), FileUrl(temp.path("left/a.txt"))));
    app().confirmTrash(AskNextTime::no);
    settleAll();
    EXPECT_THAT(names("left"), ElementsAre("b.txt"));
    EXPECT_EQ(toast(), "V Koši: 2 položky");
    EXPECT_TRUE(app().toast()->undoable);
    EXPECT_THAT(Scenario::names(), ElementsAre("..", "b.txt"));
    undo();
    EXPECT_EQ(content("left/tree/inner/deep.txt"), "deep");

    moveTo("b.txt");
    press("f8");
    EXPECT_FALSE(app().dialog()) << "nobody asks any more";
    settleAll();
    EXPECT_FALSE(exists("left/b.txt"));
}

TEST_F(FileOperationsScenario, whatCannotGoToTheTrashIsToldInOneToast) {
    store.setValue("confirmTrash", false);
    mark({"a.txt", "b.txt", "tree"});
    for (const auto* name : {"left/a.txt", "left/b.txt"})
        std::filesystem::remove(temp.path(name));
    press("f8");
    EXPECT_EQ(std::ranges::count(toast(), '\n'), 1);
    EXPECT_THAT(toast(), HasSubstr("„b.txt“"));
    EXPECT_EQ(toastKind(), Toast::Kind::error);
    EXPECT_TRUE(app().toast()->undoable) << "the folder has gone there";
    EXPECT_FALSE(exists("left/tree"));
}

TEST_F(FileOperationsScenario, anUndoThatFailsHalfWaySaysWhatIsLeft) {
    mark({"a.txt", "b.txt"});
    transfer("f6");
    std::filesystem::remove(temp.path("right/a.txt"));
    undo();
    EXPECT_EQ(toast(), "Vráceno jen částečně:\n„a.txt“ už na místě není.");
    EXPECT_EQ(toastKind(), Toast::Kind::error);
    EXPECT_EQ(content("left/b.txt"), "bb");
}

TEST_F(FileOperationsScenario, theClipboardBringsFilesHereAndAsksAboveTheThreshold) {
    mark({"a.txt", "tree"});
    press("cmd+c");
    EXPECT_EQ(toast(), "Ve schránce: 2 položky");
    EXPECT_THAT(clipboard.held.paths, ElementsAre(temp.path("left/tree"), temp.path("left/a.txt")));
    app().perform(app::KAction::copyPath);
    EXPECT_EQ(toast(), "Cesta zkopírována");
    EXPECT_EQ(clipboard.content, temp.path("left/tree") + "\n" + temp.path("left/a.txt"));

    press("tab");
    clipboard.held.isCut = true;
    press("cmd+v");
    settleAll();
    EXPECT_THAT(names("right"), UnorderedElementsAre("tree", "a.txt"));
    EXPECT_TRUE(exists("left/a.txt")) << "pasting always copies";

    // The same folder gets a copy beside the original.
    clipboard.held = {{temp.path("right/a.txt")}, false};
    press("cmd+v");
    settleAll();
    EXPECT_EQ(content("right/a 2.txt"), "aaaa");

    clipboard.held = {{temp.path("left/b.txt")}, false};
    press("cmd+opt+v");
    settleAll();
    EXPECT_FALSE(exists("left/b.txt"));

    for (const auto& paths : {std::vector<std::string>{}, {"relative"}, {"/"}}) {
        clipboard.held = {paths, false};
        press("cmd+v");
        EXPECT_EQ(takeToast(), "Ve schránce nejsou soubory.");
    }
}

TEST_F(FileOperationsScenario, manyItemsAreAskedAboutBeforeTheyArePasted) {
    for (int number = 1; number <= 11; ++number) {
        temp.file("left/" + std::to_string(number));
        clipboard.held.paths.push_back(temp.path("left/" + std::to_string(number)));
    }
    press("tab");
    press("cmd+v");
    EXPECT_EQ(dialog<app::PasteDialog>().sources.size(), 11U);
    EXPECT_EQ(dialog<app::PasteDialog>().target.path(), temp.path("right"));
    app().closeDialog();
    settleAll();
    EXPECT_THAT(names("right"), IsEmpty());
    press("cmd+v");
    app().confirmPaste();
    settleAll();
    EXPECT_EQ(names("right").size(), 11U);

    clipboard.held.paths.pop_back();
    press("cmd+opt+v");
    EXPECT_TRUE(clash()) << "ten are not asked about, but their names are taken";
}

TEST_F(FileOperationsScenario, dropsGoWhereTheyAreLetGoExceptIntoThemselves) {
    const FileUrl tree(temp.path("left/tree"));
    EXPECT_EQ(app().dropObstacle({tree}, FileUrl(temp.path("left/tree/inner"))),
              "„tree“ nejde vložit do sebe sama.");
    EXPECT_EQ(app().dropObstacle({tree}, FileUrl(temp.path("left/tree-old"))), std::nullopt);
    app().receiveDrop(TransferKind::move, {tree}, tree);
    EXPECT_EQ(toast(), "„tree“ nejde vložit do sebe sama.");
    app().receiveDrop(TransferKind::move, {FileUrl(temp.path("left/a.txt"))}, tree);
    settleAll();
    EXPECT_EQ(content("left/tree/a.txt"), "aaaa");
    EXPECT_FALSE(exists("left/a.txt"));
}

TEST_F(FileOperationsScenario, whatTakesItsTimeIsSaidAndTheActionsRunInOrder) {
    moveTo("a.txt");
    press("f2");
    app().commitRename("c.txt");
    timers.pass(std::chrono::milliseconds(149));
    EXPECT_EQ(app().busyText(), "");
    timers.pass(std::chrono::milliseconds(1));
    EXPECT_EQ(app().busyText(), "Přejmenovávám „a.txt“…");
    pressOnly("cmd+z");
    settleAll();
    EXPECT_EQ(app().busyText(), "");
    EXPECT_EQ(content("left/a.txt"), "aaaa") << "renamed, and then back again";
    EXPECT_EQ(toast(), "Vráceno: Přejmenování na „c.txt“");
}

} // namespace fennik::test
