#include "app/ui/MainWindow.h"

#include "app/model/QuickPreview.h"
#include "app/ui/CommandLineBar.h"
#include "app/ui/CommandPresenter.h"
#include "app/ui/DialogPresenter.h"
#include "app/ui/FunctionKeyBar.h"
#include "app/ui/FunctionKeys.h"
#include "app/ui/HelpCards.h"
#include "app/ui/JobTexts.h"
#include "app/ui/KeyMonitor.h"
#include "app/ui/MenuBar.h"
#include "app/ui/OperationsCard.h"
#include "app/ui/OutputCard.h"
#include "app/ui/PanelView.h"
#include "app/ui/PanelWords.h"
#include "app/ui/PathBar.h"
#include "app/ui/PlacesMenu.h"
#include "app/ui/PlatformWords.h"
#include "app/ui/QueuePresenter.h"
#include "app/ui/Text.h"
#include "app/ui/ToastBar.h"
#include "app/ui/dialogs/AboutDialog.h"
#include "app/ui/dialogs/Deafness.h"
#include "app/ui/dialogs/DialogHost.h"
#include "app/ui/dialogs/KeysDialog.h"
#include "app/ui/dialogs/LinesDialog.h"
#include "app/ui/dialogs/QuitDialog.h"
#include "app/ui/dialogs/TipsDialog.h"
#include "app/ui/preview/PreviewView.h"
#include "app/ui/settings/SettingsWindow.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QCloseEvent>
#include <QEvent>
#include <QPainter>
#include <QSplitter>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <utility>

namespace fennik::ui {

namespace {

constexpr std::array sides{app::PanelSide::left, app::PanelSide::right};

/// Screen readers look for a window, and take a plain widget for a part of one.
QAccessibleInterface* accessibleWindow(const QString&, QObject* object) {
    auto* window = qobject_cast<MainWindow*>(object);
    return window == nullptr ? nullptr : new QAccessibleWidget(window, QAccessible::Window);
}

constexpr auto sessionPatience = std::chrono::seconds(60);

ToastBar::Kind kindOf(app::Toast::Kind kind) {
    switch (kind) {
    case app::Toast::Kind::ok:
        return ToastBar::Kind::ok;
    case app::Toast::Kind::error:
        return ToastBar::Kind::error;
    case app::Toast::Kind::info:
        break;
    }
    return ToastBar::Kind::info;
}

/// What the button of a toast offers; without a title where it has none.
ToastBar::Button buttonOf(const app::Toast& toast, const KeyCaps& keys) {
    if (toast.undoable)
        return {QStringLiteral("Vrátit"), keys.of(app::KAction::undo), QStringLiteral("undo-2")};
    if (toast.action == app::Toast::Action::operations)
        return {
            PlatformWords::title(app::KAction::operations), keys.of(app::KAction::operations), {}};
    return {};
}

} // namespace

MainWindow::MainWindow(const UiContext& context, app::KeyboardLayout& layout)
    : context_(context),
      app_(context.app),
      layout_(layout),
      menuBar_(new MenuBar(context, this)),
      splitter_(new QSplitter(Qt::Horizontal, this)),
      functionKeys_(new FunctionKeyBar(
          [context](Qt::KeyboardModifiers held) { return FunctionKeys::cells(context, held); },
          context.theme, context.icons, this)),
      toast_(new ToastBar(context.theme, context.icons, this)),
      docks_(new QVBoxLayout),
      operations_(new OperationsCard(context.app.home(), context.theme, context.icons, this)),
      commandLine_(new CommandLineBar(context.theme, context.icons, this)),
      commands_(new CommandPresenter(
          context, *commandLine_, [this]() -> OutputCard& { return makeOutput(); }, this)),
      cards_(new DialogHost(context.theme, this)) {
    QAccessible::installFactory(accessibleWindow);
    const auto& theme = context.theme;
    setObjectName(QStringLiteral("mainWindow"));
    setMinimumSize(760, 480);
    resize(1440, 900);
    splitter_->setChildrenCollapsible(false);
    splitter_->setHandleWidth(theme.px(8));
    splitter_->installEventFilter(this);
    operations_->installEventFilter(this);
    auto* rows = new QVBoxLayout(this);
    const int margin = theme.px(8);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->setMenuBar(menuBar_);
    docks_->setContentsMargins(margin, 0, margin, 0);
    docks_->addWidget(splitter_, 1);
    docks_->addWidget(operations_);
    docks_->addWidget(commandLine_);
    rows->addLayout(docks_, 1);
    rows->addWidget(functionKeys_);

    for (const auto side : sides)
        addPanel(side);
    // A splitter puts each new panel under the others; what is read goes from bottom to top.
    for (auto* panel : views_)
        panel->raise();
    splitter_->handle(1)->raise();
    splitter_->handle(1)->installEventFilter(this);
    splitter_->handle(1)->setAccessibleName(QStringLiteral("Předěl mezi panely"));

    connect(menuBar_, &MenuBar::menuOpened, this, [this](bool isOpen) {
        menuIsOpen_ = isOpen;
        showFocus();
    });
    connect(functionKeys_, &FunctionKeyBar::activated, this,
            [this](int index, Qt::KeyboardModifiers layer) {
                if (const auto action = FunctionKeys::action(context_, index, layer))
                    app_.perform(*action);
            });
    connect(&context.shortcuts, &app::ShortcutStore::changed, functionKeys_,
            &FunctionKeyBar::refresh);
    auto* monitor = new KeyMonitor(context, layout, *this);
    connect(monitor, &KeyMonitor::handled, this, [](PanelTable* table) { table->endSearch(); });
    connect(monitor, &KeyMonitor::menuBarWanted, menuBar_, &MenuBar::open);
    connect(monitor, &KeyMonitor::commandWanted, this, &MainWindow::perform);
    connect(menuBar_, &MenuBar::commandChosen, this, &MainWindow::perform);

    new QueuePresenter(context, *operations_, *functionKeys_, this);
    connect(operations_, &OperationsCard::left, this, &MainWindow::focusPanel);
    connect(commandLine_, &CommandLineBar::left, this, &MainWindow::focusPanel);
    connect(commandLine_, &CommandLineBar::forwardRequested, this, &MainWindow::focusAfterCommand);
    connect(commandLine_, &CommandLineBar::backRequested, this, &MainWindow::focusBeforeCommand);
    connect(toast_, &ToastBar::buttonClicked, this, &MainWindow::pressToast);
    connect(toast_, &ToastBar::allLinesRequested, this, [this](const QString& text) {
        openCard(new LinesDialog(text, context_.theme, context_.icons, cards_));
    });
    connect(qApp, &QGuiApplication::commitDataRequest, this, [this] {
        closesAnyway_ = true;
        // The user may stop the end of the session.
        QTimer::singleShot(sessionPatience, this, [this] { closesAnyway_ = false; });
    });

    auto* dialogs = new DialogPresenter(context, this, [this] { return inactivePanel(); });
    connect(dialogs, &DialogPresenter::closed, this, &MainWindow::focusPanel);
    connect(&app_, &app::AppModel::changed, this, &MainWindow::takeApp);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    connect(qApp, &QApplication::focusChanged, this, &MainWindow::showFocus);
    takeTabs();
    focusPanel();
    takePlace();
}

MainWindow::~MainWindow() {
    // The focus moves while the window's parts go, and so does the window itself. An open menu that
    // has it would tell the bar of its loss when that is gone already.
    disconnect(qApp, nullptr, this, nullptr);
    while (auto* popup = QApplication::activePopupWidget())
        popup->close();
    if (auto* focus = QApplication::focusWidget())
        focus->clearFocus();
    hide();
}

void MainWindow::addPanel(app::PanelSide side) {
    auto* panel = new PanelView(context_, side, splitter_);
    views_[static_cast<std::size_t>(side)] = panel;
    splitter_->addWidget(panel);
    panel->installEventFilter(this);
    connect(&panel->table(), &PanelTable::focused, this, [this, side] { app_.activate(side); });
    connect(&panel->table(), &PanelTable::opened, this, [this, side] {
        app_.activate(side);
        app_.perform(app::KAction::open);
    });
    connect(panel, &PanelView::menuOpened, this, [this](bool isOpen) {
        menuIsOpen_ = isOpen;
        showFocus();
    });
    connect(&panel->pathBar(), &PathBar::fieldClosed, this, &MainWindow::focusPanel);
    connect(&app_.panel(side), &app::PanelModel::changed, this, [this](app::PanelChanges changes) {
        if (changes & (app::PanelChange::cursor | app::PanelChange::items))
            placeToast();
        if (changes.testFlag(app::PanelChange::tabs))
            takeTabs();
        if (changes & (app::PanelChange::tabs | app::PanelChange::items))
            takePlace();
    });
}

void MainWindow::takeApp(app::AppChanges changes) {
    if (changes.testFlag(app::AppChange::activeSide)) {
        focusPanel();
        placeToast();
        takePlace();
    }
    if (changes.testFlag(app::AppChange::preview))
        placePreview();
    if (changes.testFlag(app::AppChange::toast))
        takeToast();
    if (changes.testFlag(app::AppChange::places) && places_ != nullptr && places_->isVisible())
        places_->setPlaces(app_.places().favorites(), app_.places().recents(), app_.home().path());
    if (changes.testFlag(app::AppChange::request))
        takeRequests();
}

void MainWindow::takeTabs() {
    const bool areShown = std::ranges::any_of(
        sides, [this](app::PanelSide side) { return app_.panel(side).tabs().size() > 1; });
    for (auto* panel : views_) {
        if (panel != nullptr)
            panel->setTabsShown(areShown);
    }
}

void MainWindow::takeRequests() {
    const auto& path = app_.focusPathRequest();
    if (path && std::exchange(seenPathRequest_, path->token) != path->token)
        view(path->side).pathBar().openField();
    const auto& places = app_.placesRequest();
    if (places && std::exchange(seenPlacesRequest_, places->token) != places->token) {
        auto& bar = view(places->side).pathBar();
        if (places_ == nullptr)
            makePlaces();
        places_->setAddLegend(context_.keys().of(app::KAction::addFavorite));
        places_->setPlaces(app_.places().favorites(), app_.places().recents(), app_.home().path());
        places_->popUp(bar.mapTo(this, QPoint(context_.theme.px(8), bar.height())));
    }
}

void MainWindow::takeToast() {
    const auto& toast = app_.toast();
    if (!toast) {
        toast_->dismiss();
        return;
    }
    toast_->showToast({.kind = kindOf(toast->kind),
                       .text = fromUtf8(toast->text),
                       .button = buttonOf(*toast, context_.keys())});
    placeToast();
}

void MainWindow::pressToast() {
    const auto& toast = app_.toast();
    if (!toast)
        return;
    if (toast->undoable)
        app_.perform(app::KAction::undo);
    else if (toast->action == app::Toast::Action::operations)
        app_.setShowsOperations(true);
}

void MainWindow::openCard(DialogCard* card) {
    connect(card, &DialogCard::cancelled, this, &MainWindow::closeCard);
    cards_->open(card);
}

void MainWindow::closeCard() {
    cards_->close();
    if (!app_.dialog())
        focusPanel();
}

void MainWindow::perform(app::WindowCommand command) {
    using enum app::WindowCommand;
    switch (command) {
    case settings:
        if (settings_ == nullptr)
            settings_ = new SettingsWindow(context_, layout_, this);
        settings_->open();
        break;
    case tips:
        openCard(tipsCard());
        break;
    case shortcuts:
        showKeys();
        break;
    case about:
        showAbout();
        break;
    }
}

void MainWindow::welcome() {
    auto& settings = app_.settings();
    if (settings.get(app::SettingKeys::welcomeShown))
        return;
    settings.set(app::SettingKeys::welcomeShown, true);
    auto* card = tipsCard();
    new Deafness(*card);
    openCard(card);
}

DialogCard* MainWindow::tipsCard() {
    return new TipsDialog(HelpCards::tips(context_.keys()), context_.theme, context_.icons, cards_);
}

void MainWindow::showKeys() {
    auto* card = new KeysDialog(context_.theme, context_.icons, cards_);
    const auto list = [this, card] { card->setGroups(HelpCards::keys(context_.shortcuts)); };
    connect(&context_.shortcuts, &app::ShortcutStore::changed, card, list);
    list();
    openCard(card);
}

void MainWindow::showAbout() {
    auto* card = new AboutDialog(context_.theme, context_.icons, cards_);
    connect(card, &AboutDialog::licensesRequested, this, [this] {
        openCard(new LinesDialog(QStringLiteral("Licence"),
                                 QStringLiteral("Fennik a to, z čeho je složený"),
                                 HelpCards::licenses(), context_.theme, context_.icons, cards_));
    });
    openCard(card);
}

void MainWindow::askToQuit() {
    auto* card =
        new QuitDialog(JobTexts::summary(app_.jobs()), context_.theme, context_.icons, cards_);
    connect(card, &DialogCard::confirmed, this, &MainWindow::closeAnyway);
    connect(&app_, &app::AppModel::changed, card, [this, card](app::AppChanges changes) {
        if (changes.testFlag(app::AppChange::jobs))
            card->setSubtitle(JobTexts::summary(app_.jobs()));
    });
    openCard(card);
}

void MainWindow::closeAnyway() {
    closesAnyway_ = true;
    close();
}

void MainWindow::comeToFront() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (closesAnyway_ || !app_.hasUnfinishedJobs())
        return;
    event->ignore();
    if (cards_->card() == nullptr || qobject_cast<QuitDialog*>(cards_->card()) == nullptr)
        askToQuit();
}

void MainWindow::placeToast() {
    if (!app_.toast())
        return;
    const auto size = toast_->sizeHint();
    const auto panels = splitter_->geometry();
    const int gap = context_.theme.px(8);
    const int left = (width() - size.width()) / 2;
    QRect place(QPoint(left, panels.bottom() - view(app_.activeSide()).statusHeight() -
                                 size.height() - gap),
                size);
    // It never covers the row that the user is working on.
    const auto& table = view(app_.activeSide()).table();
    const QRect cursor(table.viewport()->mapTo(this, table.cursorRect().topLeft()),
                       table.cursorRect().size());
    if (place.intersects(cursor))
        place.moveTop(table.viewport()->mapTo(this, QPoint(0, gap)).y());
    toast_->move(place.topLeft());
}

app::PanelSide MainWindow::inactiveSide() const {
    return app_.activeSide() == app::PanelSide::left ? app::PanelSide::right : app::PanelSide::left;
}

QRect MainWindow::inactivePanel() {
    auto& panel = view(inactiveSide());
    return {panel.mapTo(this, QPoint()), panel.size()};
}

void MainWindow::placePreview() {
    if (!app_.quickPreview().isOpen())
        return; // one that is fading away stays where it was
    if (preview_ == nullptr) {
        preview_ = new PreviewView(context_, this);
        preview_->stackUnder(toast_); // and so under all that comes up over the panels
    }
    preview_->setGeometry(inactivePanel());
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    using Direction = app::QuickPreview::Direction;
    auto& preview = app_.quickPreview();
    const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const int key = preview.isOpen() ? event->key() : 0;
    if (modifiers == Qt::NoModifier && key == Qt::Key_Left)
        preview.step(Direction::back);
    else if (modifiers == Qt::NoModifier && key == Qt::Key_Right)
        preview.step(Direction::forth);
    else if (modifiers == Qt::AltModifier && (key == Qt::Key_PageUp || key == Qt::Key_PageDown))
        preview_->scrollPages(key == Qt::Key_PageUp ? -1 : 1);
    else
        QWidget::keyPressEvent(event);
}

void MainWindow::focusPanel() {
    if (auto* card = cards_->card()) {
        card->takeFocus();
        return;
    }
    view(app_.activeSide()).takeFocus();
    showFocus();
}

void MainWindow::focusAfterCommand() {
    if (app_.showsOperations() && !operations_->rows().empty())
        operations_->takeFocus();
    else
        focusPanel();
}

void MainWindow::focusBeforeCommand() {
    if (output_ != nullptr && output_->isOnShow())
        output_->takeFocus();
    else
        focusPanel();
}

void MainWindow::showFocus() {
    const auto* focus = QApplication::focusWidget();
    for (auto* panel : views_) {
        const bool isActive = panel->side() == app_.activeSide();
        // A window in the background has no focus at all, but its panel will have it again.
        const bool hasKeyboard = focus == nullptr || focus == &panel->table();
        const auto here = menuIsOpen_ || !hasKeyboard ? FocusLook::near : FocusLook::keyboard;
        panel->setFocusLook(isActive ? here : FocusLook::idle);
    }
}

void MainWindow::takePlace() {
    // Some actions cannot do anything in an archive.
    const bool isInArchive = app_.activePanel().archive().has_value();
    if (std::exchange(keysAreForArchive_, isInArchive) != isInArchive)
        functionKeys_->refresh();
    commands_->takePlace();
    // "[*]" is a place holder of the toolkit's.
    auto name = placeName(app_.activePanel());
    name.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
    setWindowTitle(name + QStringLiteral(" – Fennik"));
}

void MainWindow::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), context_.theme.tokens().window);
    if (!std::exchange(wasPainted_, true))
        QTimer::singleShot(0, this, &MainWindow::firstPainted);
}

void MainWindow::resizeEvent(QResizeEvent*) {
    limitDocks();
    placeToast();
}

void MainWindow::makePlaces() {
    places_ = new PlacesMenu(context_.theme, context_.icons, this);
    connect(places_, &PlacesMenu::opened, this, [this](const std::string& path) {
        app_.activePanel().navigate(FileUrl(path, FileUrl::Form::directory));
    });
    connect(places_, &PlacesMenu::openedInNewTab, this,
            [this](const std::string& path) { app_.activePanel().openTab(path); });
    connect(places_, &PlacesMenu::removed, this,
            [this](const std::string& path) { app_.removeFavorite(path); });
    connect(places_, &PlacesMenu::addRequested, this, [this] { app_.addFavorite(); });
    connect(places_, &PlacesMenu::closed, this, &MainWindow::focusPanel);
}

OutputCard& MainWindow::makeOutput() {
    output_ = new OutputCard(context_.theme, context_.icons, this);
    docks_->insertWidget(docks_->indexOf(operations_), output_);
    output_->stackUnder(operations_); // and so is read before it
    connect(output_, &OutputCard::left, this, &MainWindow::focusPanel);
    connect(output_, &OutputCard::passed, commandLine_, &CommandLineBar::takeFocus);
    limitDocks();
    return *output_;
}

void MainWindow::limitDocks() {
    constexpr double mostShareOfJobs = 0.4;
    constexpr double mostShareOfOutput = 0.5;
    constexpr double leastOutput = 128;
    constexpr double rows = 3 * 24;
    constexpr double leastWithCommandLine = 300;
    const auto& theme = context_.theme;
    commandLine_->setAlwaysShown(height() >= theme.px(leastWithCommandLine));
    const int commandLine = commandLine_->isHidden() ? 0 : commandLine_->height();
    const int room = height() - commandLine - functionKeys_->height() - menuBar_->height() -
                     splitter_->minimumSizeHint().height();
    operations_->setHeightLimit(std::min(int(height() * mostShareOfJobs), room));
    if (output_ == nullptr)
        return;
    const int left = room - operations_->height();
    const int besideRows = std::min(int(height() * mostShareOfOutput), left - theme.px(rows));
    output_->setHeightLimit(std::max(besideRows, std::min(theme.px(leastOutput), left)));
}

void MainWindow::showEvent(QShowEvent*) {
    focusPanel();
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == splitter_) {
        if (event->type() == QEvent::Resize)
            placeToast(); // the card of operations comes and goes below
        return false;
    }
    if (watched == operations_) {
        if (event->type() == QEvent::Resize)
            limitDocks();
        return false;
    }
    if (std::ranges::find(views_, watched) != views_.end()) {
        if (event->type() == QEvent::Resize || event->type() == QEvent::Move)
            placePreview();
        return false;
    }
    switch (event->type()) {
    case QEvent::MouseButtonDblClick:
        splitter_->setSizes({1, 1});
        return true;
    case QEvent::Paint: // the handle is a gap
        return true;
    default:
        return QWidget::eventFilter(watched, event);
    }
}

} // namespace fennik::ui
