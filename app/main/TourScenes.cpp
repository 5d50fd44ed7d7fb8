#include "app/main/TourScenes.h"

#include "app/commands/FennikCommands.h"
#include "app/ui/FileDrag.h"
#include "app/ui/PanelTable.h"
#include "app/ui/PanelView.h"
#include "core/operations/OperationContext.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDragMoveEvent>
#include <QFile>
#include <QMenuBar>
#include <QMimeData>

#include <array>
#include <thread>
#include <vector>

namespace fennik::app {

namespace {

using namespace std::chrono_literals;
using Looks = TourScene::Looks;

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

struct SampleJob {
    const char* title;
    std::int64_t bytes;
    std::int64_t files;
    double share;             ///< of it that is done at once
    std::int64_t perTick = 0; ///< bytes; 0: it ends there
    const char* failure = "";
};

/// A job that only pretends, so that it is always at the same point.
Uuid addJob(TourStage& stage, const SampleJob& job) {
    const FileUrl target(stage.path("Stažené/Video ze stavby.mp4"));
    return stage.app().engine().enqueue(
        {.pairs = {{.source = FileUrl(stage.path("Video ze stavby.mp4")), .destination = target}},
         .title = job.title},
        {}, [job](OperationContext& context) {
            context.setTotals(job.bytes, job.files);
            context.setCurrentName("Video ze stavby.mp4");
            context.bytesAccounted(std::int64_t(double(job.bytes) * job.share));
            context.filesDone(std::int64_t(double(job.files) * job.share));
            if (*job.failure != '\0')
                context.fail(job.failure);
            while (job.perTick > 0 && context.checkpoint() == Checkpoint::goOn) {
                context.bytesWritten(job.perTick);
                std::this_thread::sleep_for(20ms);
            }
            return std::vector{PairOutcome::pending};
        });
}

constexpr SampleJob copying{"Kopírování 4 položek", 1'270'000'000, 4, 0.35, 2'400'000};

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
    QDragEnterEvent enter({160, 40}, Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton,
                          Qt::NoModifier);
    QApplication::sendEvent(&rows, &enter);
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
    stage.app().settings().set(SettingKeys::maskHistory, {"*.jpg"});
    openDialog(stage, KAction::markMask);
    stage.type(QStringLiteral("*.pdf *.docx"));
    stage.wait(300ms);
}

void playOperations(TourStage& stage) {
    auto& app = stage.app();
    app.settings().set(SettingKeys::autoHideQueue, false);
    addJob(stage, {"Kopírování „Plná moc.pdf“", 96'870, 1, 1});
    addJob(stage, {"Přesun 2 položek", 5'400'000, 2, 0.5, 0, "„Nabídka.docx“: disk je plný."});
    const auto cancelled = addJob(stage, {"Přesun 7 položek", 84'000'000, 7, 0.3, 1000});
    stage.wait([&app] { return app.jobs().size() == 3 && app.jobs()[1].hasEnded(); });
    app.cancelJob(cancelled);
    addJob(stage, copying);
    app.engine().pause(addJob(stage, {"Kopírování 12 položek", 640'000'000, 12, 0}));
    addJob(stage, {"Zabalení 3 položek", 18'000'000, 3, 0});
    app.setShowsOperations(true);
    stage.wait(2500ms);
}

void playQueuePill(TourStage& stage) {
    addJob(stage, copying);
    addJob(stage, {"Zabalení 3 položek", 18'000'000, 3, 0});
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

void preview(TourStage& stage, const char* name) {
    stage.go(name);
    stage.perform(KAction::quickLook);
    stage.wait(1s);
}

void playPreviewOfText(TourStage& stage) {
    preview(stage, "Návrh");
}

void playPreviewOfPicture(TourStage& stage) {
    stage.show(PanelSide::left, "Dokumenty/Smlouvy 2026/Fotky z předání");
    preview(stage, "IMG_2043");
}

void playPreviewOfFolder(TourStage& stage) {
    preview(stage, "Dodatky");
}

void playInfo(TourStage& stage) {
    stage.go("Smlouva o dílo – k");
    stage.perform(KAction::info);
    stage.wait(500ms);
}

void playInfoOfFolder(TourStage& stage) {
    stage.go("Dodatky");
    stage.perform(KAction::info);
    stage.wait(500ms);
}

void playCommandLine(TourStage& stage) {
    stage.perform(KAction::commandLine);
    stage.type(QStringLiteral("grep -c Brázda *.txt"));
}

void playCommandOutput(TourStage& stage) {
    stage.perform(KAction::commandLine);
    stage.type(QStringLiteral("ls -l && cat 'Návrh smlouvy.txt'"));
    stage.press(Qt::Key_Return);
    stage.wait(1500ms);
}

void openSettings(TourStage& stage, const char* tab) {
    stage.app().settings().set(SettingKeys::settingsTab, tab);
    stage.press(Qt::Key_Comma, Qt::ControlModifier);
    stage.wait(300ms);
}

void playGeneralSettings(TourStage& stage) {
    openSettings(stage, "general");
}

void playOperationSettings(TourStage& stage) {
    openSettings(stage, "operations");
}

void playShortcutSettings(TourStage& stage) {
    openSettings(stage, "keys");
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
    TourScene{"preview-text", playPreviewOfText, Looks::all},
    TourScene{"preview-picture", playPreviewOfPicture},
    TourScene{"preview-folder", playPreviewOfFolder},
    TourScene{"info", playInfo, Looks::all},
    TourScene{"info-folder", playInfoOfFolder},
    TourScene{"command-line", playCommandLine},
    TourScene{"command-output", playCommandOutput, Looks::all},
    TourScene{"settings-general", playGeneralSettings, Looks::all},
    TourScene{"settings-operations", playOperationSettings, Looks::all},
    TourScene{"settings-keys", playShortcutSettings, Looks::all},
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
