#include "app/ui/MainWindow.h"

#include "app/ui/PanelView.h"
#include "app/ui/Text.h"

#include <QAccessibleWidget>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QSplitter>
#include <QTimer>

#include <utility>

namespace fennik::ui {

namespace {

constexpr std::array sides{app::PanelSide::left, app::PanelSide::right};

/// Screen readers look for a window, and take a plain widget for a part of one.
QAccessibleInterface* accessibleWindow(const QString&, QObject* object) {
    auto* window = qobject_cast<MainWindow*>(object);
    return window == nullptr ? nullptr : new QAccessibleWidget(window, QAccessible::Window);
}

} // namespace

MainWindow::MainWindow(app::AppModel& app, const Theme& theme, Icons& icons)
    : app_(app), theme_(theme), keys_(app), splitter_(new QSplitter(Qt::Horizontal, this)) {
    QAccessible::installFactory(accessibleWindow);
    setObjectName(QStringLiteral("mainWindow"));
    setMinimumSize(760, 480);
    resize(1440, 900);
    splitter_->setChildrenCollapsible(false);
    splitter_->setHandleWidth(theme.px(8));
    auto* layout = new QHBoxLayout(this);
    const int margin = theme.px(8);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addWidget(splitter_);

    for (const auto side : sides) {
        auto* panel = new PanelView(app, side, theme, icons, splitter_);
        views_[static_cast<std::size_t>(side)] = panel;
        splitter_->addWidget(panel);
        connect(&panel->table(), &PanelTable::focused, this, [this, side] { app_.activate(side); });
        connect(&panel->table(), &PanelTable::keyPressed, this,
                [this](QKeyEvent* event) { event->setAccepted(keys_.press(*event)); });
        connect(panel, &PanelView::menuOpened, this, [this](bool isOpen) {
            menuIsOpen_ = isOpen;
            showFocus();
        });
        connect(&app_.panel(side), &app::PanelModel::changed, this, &MainWindow::setTitle);
    }
    // A splitter puts each new panel under the others; what is read goes from bottom to top.
    for (auto* panel : views_)
        panel->raise();
    splitter_->handle(1)->raise();
    splitter_->handle(1)->installEventFilter(this);
    splitter_->handle(1)->setAccessibleName(QStringLiteral("Předěl mezi panely"));
    connect(&app_, &app::AppModel::changed, this, [this](app::AppChanges changes) {
        if (changes.testFlag(app::AppChange::activeSide))
            takeActiveSide();
    });
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
    takeActiveSide();
}

void MainWindow::takeActiveSide() {
    view(app_.activeSide()).table().setFocus();
    showFocus();
    setTitle();
}

void MainWindow::showFocus() {
    for (auto* panel : views_) {
        const bool isActive = panel->side() == app_.activeSide();
        const auto here = menuIsOpen_ ? FocusLook::near : FocusLook::keyboard;
        panel->setFocusLook(isActive ? here : FocusLook::idle);
    }
}

void MainWindow::setTitle() {
    const auto folder = app_.activePanel().folder();
    // "[*]" is a place holder of the toolkit's.
    auto name = shownName(folder.lastComponent());
    name.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
    setWindowTitle(name + QStringLiteral(" – Fennik"));
}

void MainWindow::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), theme_.tokens().window);
    if (!std::exchange(wasPainted_, true))
        QTimer::singleShot(0, this, &MainWindow::firstPainted);
}

void MainWindow::showEvent(QShowEvent*) {
    view(app_.activeSide()).table().setFocus();
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
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
