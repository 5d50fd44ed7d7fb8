#include "app/ui/TabStrip.h"

#include "app/ui/AccessibleRole.h"
#include "app/ui/IconButton.h"
#include "app/ui/TabButton.h"

#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <numeric>
#include <utility>

namespace fennik::ui {

namespace {

constexpr double sideMargin = 7;
constexpr double addSide = 26;
constexpr double leastWidth = 90;

/// The greatest width of a tab with which all of them fit into `room`.
int widestFitting(std::vector<int> widths, int room) {
    std::ranges::sort(widths);
    int count = int(widths.size());
    for (const int width : widths) {
        if (width * count > room)
            return room / count;
        room -= width;
        --count;
    }
    return widths.empty() ? 0 : widths.back();
}

} // namespace

TabStrip::TabStrip(const Theme& theme, Icons& icons, QWidget* parent)
    : QWidget(parent),
      theme_(theme),
      icons_(icons),
      list_(new QWidget(this)),
      add_(new IconButton(QStringLiteral("plus"), QStringLiteral("Nová záložka"), {}, theme, icons,
                          this)) {
    setObjectName(QStringLiteral("tabStrip"));
    setFixedHeight(theme.px(32));
    list_->setObjectName(QStringLiteral("tabList"));
    setAccessibleRole(*list_, QAccessible::PageTabList);
    list_->setAccessibleName(QStringLiteral("Záložky"));
    add_->setObjectName(QStringLiteral("newTabButton"));
    connect(add_, &QAbstractButton::clicked, this, &TabStrip::newTabRequested);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void TabStrip::setTabs(const std::vector<Tab>& tabs, int active) {
    while (buttons_.size() > tabs.size()) {
        buttons_.back()->hide();
        buttons_.back()->deleteLater(); // it may be the one that was clicked
        buttons_.pop_back();
    }
    while (buttons_.size() < tabs.size())
        buttons_.push_back(addButton());
    active_ = active;
    for (std::size_t i = 0; i < tabs.size(); ++i)
        buttons_[i]->setTitle(tabs[i].title, tabs[i].toolTip);
    showLooks();
    layOut();
}

void TabStrip::setActivePanel(bool isActivePanel) {
    isActivePanel_ = isActivePanel;
    showLooks();
}

void TabStrip::showLooks() {
    for (std::size_t i = 0; i < buttons_.size(); ++i)
        buttons_[i]->setLook({.isActive = int(i) == active_,
                              .isActivePanel = isActivePanel_,
                              .isClosable = buttons_.size() > 1,
                              .isDropTarget = int(i) == dropTab_});
}

int TabStrip::tabAt(const QPoint& point) const {
    const auto inList = list_->mapFrom(this, point);
    if (!list_->rect().contains(inList))
        return -1;
    const auto found = std::ranges::find_if(
        buttons_, [&](const TabButton* button) { return button->geometry().contains(inList); });
    return found == buttons_.end() ? -1 : int(found - buttons_.begin());
}

void TabStrip::setDropTab(int index) {
    if (std::exchange(dropTab_, index) != index)
        showLooks();
}

TabButton* TabStrip::addButton() {
    auto* button = new TabButton(theme_, icons_, list_);
    const int index = int(buttons_.size());
    connect(button, &TabButton::pressed, this, [this, index] {
        dragged_ = index;
        select(index);
    });
    connect(button, &TabButton::dragged, this, &TabStrip::dragTo);
    connect(button, &TabButton::closeRequested, this,
            [this, index] { emit closeRequested(index); });
    button->show();
    return button;
}

void TabStrip::select(int index) {
    if (index != active_ && index >= 0 && index < int(buttons_.size()))
        emit selected(index);
}

void TabStrip::dragTo(int x) {
    const auto middleOf = [this](int index) {
        return buttons_[std::size_t(index)]->geometry().center().x();
    };
    const int last = int(buttons_.size()) - 1;
    int target = std::min(dragged_, last);
    while (target < last && x > middleOf(target + 1))
        ++target;
    while (target > 0 && x < middleOf(target - 1))
        --target;
    if (target != dragged_)
        emit moved(std::exchange(dragged_, target), target);
}

std::vector<int> TabStrip::tabWidths(int room) const {
    std::vector<int> widths;
    for (const auto* button : buttons_)
        widths.push_back(button->sizeHint().width());
    const int most = std::max(widestFitting(widths, room), theme_.px(leastWidth));
    for (auto& width : widths)
        width = std::min(width, most);
    return widths;
}

void TabStrip::layOut() {
    const int addWidth = theme_.px(addSide);
    const int room = width() - 2 * theme_.px(sideMargin) - addWidth;
    const auto widths = tabWidths(room);
    const int total = std::accumulate(widths.begin(), widths.end(), 0);
    const auto active = widths.begin() + std::clamp(active_, 0, int(widths.size()));
    const int activeLeft = std::accumulate(widths.begin(), active, 0);
    const int activeRight = activeLeft + (active == widths.end() ? 0 : *active);
    scrolled_ = std::min(std::max(scrolled_, activeRight - room), activeLeft);
    scrolled_ = std::clamp(scrolled_, 0, std::max(0, total - room));

    const int tabHeight = theme_.px(27);
    list_->setGeometry(theme_.px(sideMargin), height() - tabHeight, std::min(room, total),
                       tabHeight);
    int left = -scrolled_;
    for (std::size_t i = 0; i < buttons_.size(); ++i) {
        buttons_[i]->setGeometry(left, 0, widths[i], tabHeight);
        left += widths[i];
    }
    add_->setGeometry(list_->geometry().right() + theme_.px(3),
                      height() - tabHeight + (tabHeight - addWidth) / 2, addWidth, addWidth);
    update();
}

void TabStrip::resizeEvent(QResizeEvent*) {
    layOut();
}

void TabStrip::wheelEvent(QWheelEvent* event) {
    constexpr int notch = 120;
    turned_ += event->angleDelta().y() + event->angleDelta().x();
    const int steps = turned_ / notch;
    turned_ -= steps * notch;
    if (steps != 0)
        select(std::clamp(active_ - steps, 0, int(buttons_.size()) - 1));
    event->accept();
}

void TabStrip::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(tokens.window);
    // The panel's corners are round above.
    constexpr double radius = 8;
    painter.setClipRect(rect());
    painter.drawRoundedRect(QRectF(rect()).adjusted(0, 0, 0, radius), radius, radius);
    painter.fillRect(0, height() - 1, width(), 1, tokens.line);
}

} // namespace fennik::ui
