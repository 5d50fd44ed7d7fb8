#include "app/main/TourScenes.h"

#include "app/commands/FennikCommands.h"
#include "app/ui/FileDrag.h"
#include "app/ui/PanelTable.h"
#include "app/ui/PanelView.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDragMoveEvent>
#include <QFile>
#include <QMenuBar>
#include <QMimeData>

#include <array>

namespace fennik::app {

namespace {

using namespace std::chrono_literals;
using Looks = TourScene::Looks;

constexpr std::int64_t slowTransfer = 40'000'000; // bytes a second

void mark(TourStage& stage, std::initializer_list<const char*> names) {
    for (const auto* name : names) {
        stage.go(name);
        stage.perform(KAction::toggleMark);
    }
}

void markSome(TourStage& stage) {
    mark(stage, {"Dodatky", "Kalkulace", "Plná moc", "Termíny"});
    stage.go("Smlouva o dílo – k");
}

void openDialog(TourStage& stage, KAction action) {
    stage.app().perform(action);
    stage.wait([&stage] { return stage.app().dialog().has_value(); });
    stage.wait(300ms); // for the line that tells what will come of it
}

void click(TourStage& stage, const char* name) {
    auto* button = stage.window().findChild<QAbstractButton*>(QString::fromLatin1(name));
    if (button != nullptr)
        button->click();
    stage.settle();
}

/// Starts copying what is under the cursor, slowly enough to be looked at.
void copySlowly(TourStage& stage, const char* name) {
    stage.go(name);
    openDialog(stage, KAction::copy);
    stage.app().confirmTransfer(stage.path("Stažené"));
    stage.wait([&stage] { return !stage.app().dialog(); });
}

void playMain(TourStage& stage) {
    markSome(stage);
}

void playTabs(TourStage& stage) {
    stage.app().activePanel().openTab(stage.path("Projekty"));
    stage.app().activePanel().openTab(stage.path("Dokumenty"));
    stage.settle();
}

void playToast(TourStage& stage) {
    openDialog(stage, KAction::newFolder);
    stage.app().confirmNewFolder("Archiv");
    stage.wait([&stage] { return stage.app().toast().has_value(); });
    stage.wait(200ms);
}

void playHidden(TourStage& stage) {
    stage.perform(KAction::toggleHidden);
}

void playMenu(TourStage& stage) {
    stage.window().findChild<QMenuBar*>()->setActiveAction(
        stage.window().findChild<QMenuBar*>()->actions().front());
    stage.wait(200ms);
}

void playShiftHeld(TourStage& stage) {
    stage.hold(Qt::Key_Shift);
    stage.wait(250ms);
}

void playPath(TourStage& stage) {
    stage.perform(KAction::focusPath);
    stage.press(Qt::Key_End);
    stage.press(Qt::Key_A, Qt::ControlModifier);
    stage.type(QString::fromStdString(stage.path("Dokumenty/S")));
    stage.wait(400ms);
}

void playPlaces(TourStage& stage) {
    stage.app().addFavorite();
    for (const auto* name : {"Projekty/fennik", "Dokumenty/Daně", "Záloha/Smlouvy"})
        stage.show(PanelSide::left, name);
    stage.app().addFavorite();
    stage.perform(KAction::favorites);
    stage.wait([&stage] { return !stage.app().toast(); });
}

void playNoPermission(TourStage& stage) {
    QFile::setPermissions(QString::fromStdString(stage.path("Zamčené")), {});
    stage.show(PanelSide::left, "Zamčené");
}

void playNotFound(TourStage& stage) {
    stage.show(PanelSide::left, "Vypojený disk/Fotky");
}

void playEmpty(TourStage& stage) {
    stage.show(PanelSide::left, "Prázdná");
}

void playRename(TourStage& stage) {
    stage.go("Nabídka");
    stage.perform(KAction::rename);
}

void playDrop(TourStage& stage) {
    const auto data = ui::FileDrag::data({FileUrl(stage.path("Dokumenty/Daně"))});
    auto& rows = *stage.window().view(PanelSide::right).table().viewport();
    QDragMoveEvent over({160, 40}, Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton,
                        Qt::NoModifier);
    QApplication::sendEvent(&rows, &over);
    stage.wait(100ms);
}

void playTransfer(TourStage& stage) {
    markSome(stage);
    openDialog(stage, KAction::copy);
}

void playMove(TourStage& stage) {
    stage.go("Smlouva o dílo – k");
    openDialog(stage, KAction::move);
    stage.press(Qt::Key_End);
    stage.type(QStringLiteral("/Nová složka"));
    stage.wait(300ms);
}

void playNewFolder(TourStage& stage) {
    openDialog(stage, KAction::newFolder);
    stage.type(QStringLiteral("Předání/Fotky"));
    stage.wait(300ms);
}

void playTrash(TourStage& stage) {
    markSome(stage);
    openDialog(stage, KAction::trash);
}

void playPaste(TourStage& stage) {
    stage.perform(KAction::markAll);
    stage.perform(KAction::copyToClipboard);
    stage.press(Qt::Key_Tab);
    openDialog(stage, KAction::paste);
}

void playConflict(TourStage& stage) {
    mark(stage, {"Plná moc", "Smlouva o dílo – k"});
    stage.go("Smlouva o dílo – k");
    openDialog(stage, KAction::copy);
    stage.app().confirmTransfer(stage.path("Záloha"));
    stage.wait([&stage] {
        return stage.app().dialog() &&
               std::holds_alternative<ConflictDialog>(*stage.app().dialog());
    });
}

void playPack(TourStage& stage) {
    markSome(stage);
    openDialog(stage, KAction::pack);
}

void playExtract(TourStage& stage) {
    stage.press(Qt::Key_Tab);
    stage.go("Podklady");
    openDialog(stage, KAction::unpack);
}

void openArchive(TourStage& stage, const char* name) {
    stage.press(Qt::Key_Tab);
    stage.go(name);
    stage.app().perform(KAction::open);
}

void playArchive(TourStage& stage) {
    openArchive(stage, "Podklady");
    stage.wait([&stage] { return stage.app().activePanel().archive().has_value(); });
    stage.settle();
}

void playPassword(TourStage& stage) {
    openArchive(stage, "Osobní");
    stage.wait([&stage] { return stage.app().activePanel().archive().has_value(); });
    stage.go("Plná moc");
    stage.app().perform(KAction::open);
    stage.wait([&stage] { return stage.app().dialog().has_value(); });
    stage.type(QStringLiteral("heslo"));
}

void playMask(TourStage& stage) {
    openDialog(stage, KAction::markMask);
    stage.type(QStringLiteral("*.jpg"));
    stage.press(Qt::Key_Return);
    openDialog(stage, KAction::markMask);
    stage.type(QStringLiteral("*.pdf *.docx"));
    stage.wait(300ms);
}

void playOperations(TourStage& stage) {
    auto& app = stage.app();
    app.settings().set(SettingKeys::autoHideQueue, false);
    copySlowly(stage, "Plná moc");
    stage.wait([&app] { return !app.hasUnfinishedJobs(); });
    app.engine().setThrottle(slowTransfer);
    copySlowly(stage, "Video");
    copySlowly(stage, "Nahrávka");
    copySlowly(stage, "Prezentace");
    copySlowly(stage, "Fotky");
    app.cancelJob(app.jobs().back().id);
    app.engine().pause(app.jobs()[app.jobs().size() - 2].id);
    app.setShowsOperations(true);
    stage.wait(2s);
}

void playQueuePill(TourStage& stage) {
    stage.app().engine().setThrottle(slowTransfer);
    copySlowly(stage, "Video");
    stage.app().setShowsOperations(false);
    stage.wait(1500ms);
}

void playQuit(TourStage& stage) {
    playQueuePill(stage);
    stage.window().close();
    stage.wait(200ms);
}

void playTips(TourStage& stage) {
    stage.window().perform(WindowCommand::tips);
}

void playMoreTips(TourStage& stage) {
    playTips(stage);
    click(stage, "dialogOther");
}

void playAbout(TourStage& stage) {
    stage.window().perform(WindowCommand::about);
}

void playLicenses(TourStage& stage) {
    playAbout(stage);
    click(stage, "aboutLicenses");
}

void playShortcuts(TourStage& stage) {
    stage.window().perform(WindowCommand::shortcuts);
}

void playShortcutsFound(TourStage& stage) {
    playShortcuts(stage);
    stage.type(QStringLiteral("alt+f"));
}

constexpr std::array scenes{
    TourScene{"main", playMain, Looks::all},
    TourScene{"tabs", playTabs},
    TourScene{"toast", playToast, Looks::all},
    TourScene{"hidden", playHidden},
    TourScene{"menu", playMenu},
    TourScene{"function-keys-shift", playShiftHeld},
    TourScene{"path", playPath, Looks::all},
    TourScene{"places", playPlaces, Looks::all},
    TourScene{"no-permission", playNoPermission, Looks::all},
    TourScene{"not-found", playNotFound},
    TourScene{"empty", playEmpty, Looks::all},
    TourScene{"rename", playRename},
    TourScene{"drop", playDrop, Looks::all},
    TourScene{"transfer", playTransfer, Looks::all},
    TourScene{"move", playMove},
    TourScene{"new-folder", playNewFolder, Looks::all},
    TourScene{"trash", playTrash, Looks::all},
    TourScene{"paste", playPaste},
    TourScene{"conflict", playConflict, Looks::all},
    TourScene{"pack", playPack, Looks::all},
    TourScene{"extract", playExtract, Looks::all},
    TourScene{"archive", playArchive},
    TourScene{"password", playPassword, Looks::all},
    TourScene{"mask", playMask, Looks::all},
    TourScene{"operations", playOperations, Looks::all},
    TourScene{"queue-pill", playQueuePill, Looks::all},
    TourScene{"quit", playQuit},
    TourScene{"tips", playTips, Looks::all},
    TourScene{"tips-2", playMoreTips},
    TourScene{"about", playAbout, Looks::all},
    TourScene{"licenses", playLicenses},
    TourScene{"shortcuts", playShortcuts, Looks::all},
    TourScene{"shortcuts-found", playShortcutsFound},
};

} // namespace

std::span<const TourScene> tourScenes() {
    return scenes;
}

} // namespace fennik::app
