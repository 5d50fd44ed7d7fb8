#include "app/ui/settings/SettingsWindow.h"

#include "app/ui/StyleSheet.h"
#include "app/ui/Text.h"
#include "app/ui/dialogs/DialogHost.h"
#include "app/ui/settings/SettingsForm.h"
#include "app/ui/settings/SettingsPages.h"
#include "app/ui/settings/SettingsTabs.h"
#include "app/ui/settings/ShortcutsPage.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QStackedWidget>

#include <algorithm>
#include <string>

namespace fennik::ui {

namespace {

constexpr double narrowWidth = 620;

/// Screen readers look for a window, and take a plain widget for a part of one.
QAccessibleInterface* accessibleWindow(const QString&, QObject* object) {
    auto* window = qobject_cast<SettingsWindow*>(object);
    return window == nullptr ? nullptr : new QAccessibleWidget(window, QAccessible::Window);
}

} // namespace

SettingsWindow::SettingsWindow(const UiContext& context, app::KeyboardLayout& layout,
                               QWidget* owner)
    : QWidget(owner, Qt::Window),
      context_(context),
      pageList_{{"general", QStringLiteral("Obecné"), QStringLiteral("sliders-horizontal"),
                 [this] { return scrolling(SettingsPages::general(context_)); }},
                {"operations", QStringLiteral("Operace"), QStringLiteral("layout-list"),
                 [this] { return scrolling(SettingsPages::operations(context_)); }},
                {"keys", QStringLiteral("Zkratky"), QStringLiteral("keyboard"),
                 [this, &layout] { return new ShortcutsPage(context_, layout, *cards_, pages_); }}},
      pages_(new QStackedWidget(this)),
      cards_(new DialogHost(context.theme, this)) {
    QAccessible::installFactory(accessibleWindow);
    setObjectName(QStringLiteral("settingsWindow"));
    const auto& theme = context.theme;
    // A new sheet takes the labels' colours away, so that comes before they are given new ones.
    wear(*this, theme, StyleSheet::all);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    std::vector<SettingsTabs::Page> tabs;
    tabs.reserve(pageList_.size());
    for (const auto& page : pageList_)
        tabs.push_back({page.title, page.icon, fromUtf8(page.value) + QStringLiteral("Tab")});
    tabs_ = new SettingsTabs(tabs, theme, context.icons, this);
    // What is read begins with the pages.
    tabs_->stackUnder(pages_);
    auto* columns = new QHBoxLayout(this);
    columns->setContentsMargins({});
    columns->setSpacing(0);
    columns->addWidget(tabs_);
    columns->addWidget(pages_, 1);
    setMinimumSize(480, 320);
    const auto room = owner->screen()->availableSize();
    resize(std::min(theme.px(980), room.width() * 9 / 10),
           std::min(theme.px(716), room.height() * 9 / 10));

    const auto remembered = std::ranges::find(
        pageList_, context.app.settings().get(app::SettingKeys::settingsTab), &Page::value);
    const int index = remembered == pageList_.end() ? 0 : int(remembered - pageList_.begin());
    tabs_->choose(index);
    showPage(index);
    connect(tabs_, &SettingsTabs::chosenChanged, this, &SettingsWindow::showPage);
}

QScrollArea* SettingsWindow::scrolling(QWidget* content) {
    auto* area = new QScrollArea(pages_);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidgetResizable(true);
    area->setWidget(content);
    area->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false); // which the scroll area has set
    return area;
}

void SettingsWindow::showPage(int index) {
    auto& page = pageList_[std::size_t(index)];
    if (page.widget == nullptr) {
        page.widget = page.make();
        pages_->addWidget(page.widget);
    }
    pages_->setCurrentWidget(page.widget);
    fitPages();
    setWindowTitle(QStringLiteral("Nastavení – %1").arg(page.title));
    auto& settings = context_.app.settings();
    if (settings.get(app::SettingKeys::settingsTab) != page.value)
        settings.set(app::SettingKeys::settingsTab, std::string(page.value));
}

void SettingsWindow::open() {
    if (!isVisible()) {
        // In the middle of the other window, as far as the screen goes.
        const auto room = parentWidget()->screen()->availableGeometry();
        const auto corner = parentWidget()->frameGeometry().center() - rect().center();
        const int left =
            std::clamp(corner.x(), room.left(), std::max(room.left(), room.right() + 1 - width()));
        const int top =
            std::clamp(corner.y(), room.top(), std::max(room.top(), room.bottom() + 1 - height()));
        move(left, top);
        tabs_->takeFocus();
    }
    show();
    raise();
    activateWindow();
}

void SettingsWindow::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const bool isPlain = modifiers == Qt::NoModifier;
    const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
    auto* button = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
    if ((isPlain && key == Qt::Key_Escape) ||
        (modifiers == Qt::ControlModifier && key == Qt::Key_W))
        close();
    else if (isPlain && isEnter && button != nullptr && !event->isAutoRepeat())
        button->click();
    event->accept();
}

void SettingsWindow::fitPages() {
    const bool isNarrow = width() < context_.theme.px(narrowWidth);
    tabs_->setTextShown(!isNarrow);
    for (auto* form : findChildren<SettingsForm*>())
        form->setStacked(isNarrow);
}

void SettingsWindow::resizeEvent(QResizeEvent*) {
    fitPages();
}

void SettingsWindow::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), context_.theme.tokens().panel);
}

} // namespace fennik::ui
