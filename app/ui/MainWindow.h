#pragma once

#include "app/ui/UiContext.h"

#include <QWidget>

#include <array>

class QSplitter;
class QVBoxLayout;

namespace fennik::app {
class KeyboardLayout;
enum class WindowCommand;
} // namespace fennik::app

namespace fennik::ui {

class CommandLineBar;
class CommandPresenter;
class DialogCard;
class DialogHost;
class FunctionKeyBar;
class MenuBar;
class OperationsCard;
class OutputCard;
class PanelView;
class PlacesMenu;
class PreviewView;
class SettingsWindow;
class ToastBar;

/// The window: menus, the two panels side by side, the function keys, and what comes up over them.
class MainWindow final : public QWidget {
    Q_OBJECT

public:
    MainWindow(const UiContext& context, app::KeyboardLayout& layout);
    ~MainWindow() override;

    /// Shows what the menus open for the window itself.
    void perform(app::WindowCommand command);
    /// Shows what one should know at first, if it has never been shown before.
    void welcome();
    /// Closes the window without a question, because the system ends the program.
    void closeAnyway();
    /// The user wants to see it.
    void comeToFront();

    PanelView& view(app::PanelSide side) { return *views_[static_cast<std::size_t>(side)]; }

signals:
    /// The first picture has been painted.
    void firstPainted();

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void addPanel(app::PanelSide side);
    void takeApp(app::AppChanges changes);
    void takeTabs();
    void takeRequests();
    void takeToast();
    void pressToast();
    void openCard(DialogCard* card);
    void closeCard();
    DialogCard* tipsCard();
    void showKeys();
    void showAbout();
    void askToQuit();
    void focusPanel();
    /// From the command line, forwards and backwards.
    void focusAfterCommand();
    void focusBeforeCommand();
    void showFocus();
    /// The active panel shows something else, or another panel is the active one.
    void takePlace();
    void placeToast();
    OutputCard& makeOutput();
    void makePlaces();
    /// The panels keep room beside what is docked below them.
    void limitDocks();
    void placePreview();
    app::PanelSide inactiveSide() const;
    QRect inactivePanel();

    UiContext context_;
    app::AppModel& app_;
    app::KeyboardLayout& layout_;
    MenuBar* menuBar_;
    QSplitter* splitter_;
    std::array<PanelView*, 2> views_{};
    FunctionKeyBar* functionKeys_;
    PreviewView* preview_ = nullptr; ///< over the panels; none before the first one
    ToastBar* toast_;
    PlacesMenu* places_ = nullptr; ///< none before it is first opened
    QVBoxLayout* docks_;           ///< the panels, and what is docked below them
    OutputCard* output_ = nullptr; ///< none before the first command
    OperationsCard* operations_;
    CommandLineBar* commandLine_;
    CommandPresenter* commands_;
    DialogHost* cards_; ///< the window's own questions and messages, over the dialogs
    SettingsWindow* settings_ = nullptr; ///< once it has been asked for
    bool closesAnyway_ = false;
    bool menuIsOpen_ = false;
    bool wasPainted_ = false;
    bool keysAreForArchive_ = false; ///< those of the function bar
    int seenPathRequest_ = 0;
    int seenPlacesRequest_ = 0;
};

} // namespace fennik::ui
