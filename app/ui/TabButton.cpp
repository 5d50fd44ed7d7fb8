#include "app/ui/TabButton.h"

#include "app/ui/Text.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QFontMetricsF>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>
#include <utility>

namespace fennik::ui {

namespace {

constexpr double padding = 12;
constexpr double closeRoom = 24;
constexpr double mostWidth = 240;

class AccessibleTab final : public QAccessibleWidget {
public:
    explicit AccessibleTab(TabButton* tab)
        : QAccessibleWidget(tab, QAccessible::PageTab), tab_(*tab) {}

    QAccessible::State state() const override {
        auto state = QAccessibleWidget::state();
        state.selectable = true;
        state.selected = tab_.look().isActive;
        return state;
    }
    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override {
        if (name == pressAction())
            emit tab_.pressed();
    }

private:
    TabButton& tab_;
};

QAccessibleInterface* accessibleTab(const QString&, QObject* object) {
    auto* tab = qobject_cast<TabButton*>(object);
    return tab == nullptr ? nullptr : new AccessibleTab(tab);
}

} // namespace

TabButton::TabButton(const Theme& theme, Icons& icons, QWidget* parent)
    : QWidget(parent), theme_(theme), icons_(icons) {
    QAccessible::installFactory(accessibleTab);
    setObjectName(QStringLiteral("tabButton"));
    setAttribute(Qt::WA_Hover);
    setMouseTracking(true);
}

void TabButton::setTitle(const QString& title, const QString& toolTip) {
    if (title == title_ && toolTip == shownToolTip_)
        return;
    title_ = title;
    shownToolTip_ = toolTip;
    textWidth_.fill(-1);
    setAccessibleName(title);
    setAccessibleDescription(toolTip); // else the tooltip with its markup
    setToolTip(toolTipText(toolTip));
    update();
}

void TabButton::setLook(const Look& look) {
    if (look == look_)
        return;
    const bool wasActive = std::exchange(look_, look).isActive;
    if (look.isActive != wasActive) {
        QAccessible::State changed;
        changed.selected = true;
        QAccessibleStateChangeEvent event(this, changed);
        QAccessible::updateAccessibility(&event);
    }
    update();
}

QRect TabButton::closeArea() const {
    if (!look_.isClosable || !(look_.isActive || underMouse()))
        return {};
    const int side = theme_.px(closeRoom);
    return {width() - side - theme_.px(4), (height() - side) / 2 + 1, side, side};
}

QSize TabButton::sizeHint() const {
    double& text = textWidth_[look_.isActive ? 1 : 0];
    if (text < 0) {
        const auto weight = look_.isActive ? QFont::Medium : QFont::Normal;
        text = QFontMetricsF(theme_.font(FontRole::body, weight)).horizontalAdvance(title_);
    }
    const double close = look_.isClosable && look_.isActive ? closeRoom - padding + 8 : 0;
    const int wanted = int(std::ceil(text)) + 1 + theme_.px(2 * padding + close);
    return {std::min(wanted, theme_.px(mostWidth)), theme_.px(27)};
}

void TabButton::paintGround(QPainter& painter) const {
    const auto& tokens = theme_.tokens();
    constexpr double radius = 7;
    if (!look_.isActive) {
        if (underMouse()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(tokens.hover);
            painter.drawRoundedRect(QRectF(rect()).adjusted(1, 2, -1, -3), radius, radius);
        }
        return;
    }
    // Open below, where the tab goes over into the panel.
    const auto shape = QRectF(rect()).adjusted(0.5, 0.5, -0.5, radius);
    painter.setPen(tokens.line);
    painter.setBrush(tokens.chrome);
    painter.drawRoundedRect(shape, radius, radius);
    if (look_.isActivePanel)
        painter.fillRect(QRectF(radius + 1, 0, width() - 2 * (radius + 1), 2), tokens.accent);
}

void TabButton::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintGround(painter);

    if (look_.isDropTarget) {
        painter.setPen(QPen(theme_.tokens().accent, 1, Qt::DashLine));
        painter.setBrush(theme_.tokens().accentSoft);
        painter.drawRoundedRect(QRectF(rect()).adjusted(2.5, 3.5, -2.5, -3.5), 5, 5);
    }

    const auto close = closeArea();
    const auto font = theme_.font(FontRole::body, look_.isActive ? QFont::Medium : QFont::Normal);
    auto text = QRectF(rect()).adjusted(theme_.px(padding), 1, -theme_.px(padding) + 1, 0);
    if (!close.isNull())
        text.setRight(close.left() + 1);
    painter.setFont(font);
    painter.setPen(look_.isActive ? tokens.text : tokens.text2);
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetricsF(font).elidedText(title_, Qt::ElideRight, text.width()));
    if (close.isNull())
        return;
    if (isOverClose_) {
        const int inset = theme_.px(3);
        painter.setPen(Qt::NoPen);
        painter.setBrush(press_ == Press::close || !look_.isActive ? tokens.pressed : tokens.hover);
        painter.drawRoundedRect(close.adjusted(inset, inset, -inset, -inset), 5, 5);
    }
    const int side = theme_.px(14);
    painter.drawPixmap(close.center().x() - side / 2 + 1, close.center().y() - side / 2 + 1,
                       icons_.line(QStringLiteral("x"), side, tokens.text2, devicePixelRatioF()));
}

void TabButton::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton) {
        press_ = Press::middle;
    } else if (event->button() == Qt::LeftButton) {
        pressedAt_ = event->pos();
        press_ = closeArea().contains(event->pos()) ? Press::close : Press::tab;
        if (press_ == Press::tab)
            emit pressed();
    }
    update();
}

void TabButton::mouseMoveEvent(QMouseEvent* event) {
    const int distance = (event->pos() - pressedAt_).manhattanLength();
    if (press_ == Press::tab && distance >= QApplication::startDragDistance())
        press_ = Press::drag;
    if (press_ == Press::drag)
        emit dragged(mapToParent(event->pos()).x());
    isOverClose_ = closeArea().contains(event->pos());
    update();
}

void TabButton::leaveEvent(QEvent*) {
    isOverClose_ = false;
}

void TabButton::mouseReleaseEvent(QMouseEvent* event) {
    const auto press = std::exchange(press_, Press::none);
    const bool closes =
        (press == Press::close && closeArea().contains(event->pos())) ||
        (press == Press::middle && look_.isClosable && rect().contains(event->pos()));
    update();
    if (closes)
        emit closeRequested();
}

} // namespace fennik::ui
