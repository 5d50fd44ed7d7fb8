#include "app/ui/DockedCard.h"

#include "app/ui/AccessibleRole.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <chrono>

namespace fennik::ui {

namespace {

using namespace std::chrono_literals;

constexpr double gapAbove = 8;
constexpr double header = 32;

} // namespace

DockedCard::DockedCard(const Theme& theme, QWidget* parent)
    : QWidget(parent), theme_(theme), motion_(120ms, 0, this) {
    setAccessibleRole(*this, QAccessible::Grouping);
    setFixedHeight(0);
    hide();
    connect(&motion_, &Motion::moved, this, &DockedCard::takeHeight);
    connect(&motion_, &Motion::arrived, this, [this] { setVisible(motion_.value() > 0); });
}

void DockedCard::setOnShow(bool isOnShow) {
    if (isOnShow == isOnShow_)
        return;
    isOnShow_ = isOnShow;
    const auto* focus = QApplication::focusWidget();
    if (isOnShow)
        show();
    else if (focus != nullptr && isAncestorOf(focus))
        emit left();
    motion_.moveTo(isOnShow ? 1 : 0);
}

void DockedCard::setHeightLimit(int limit) {
    heightLimit_ = limit;
    takeHeight();
}

void DockedCard::takeHeight() {
    const int height = qRound(wholeHeight() * motion_.value());
    if (height != this->height())
        setFixedHeight(height);
}

int DockedCard::wholeHeight() const {
    return std::min(wantedHeight(), heightLimit_);
}

int DockedCard::top() const {
    return theme_.px(gapAbove);
}

int DockedCard::headerHeight() const {
    return theme_.px(header);
}

int DockedCard::headerMiddle() const {
    return top() + 1 + headerHeight() / 2;
}

int DockedCard::bodyTop() const {
    return top() + 1 + headerHeight();
}

void DockedCard::paintCard(QPainter& painter, const QColor& body, const QPen& outline) const {
    const auto& tokens = theme_.tokens();
    const double half = outline.widthF() / 2;
    QPainterPath card;
    card.addRoundedRect(QRectF(rect()).adjusted(half, top() + half, -half, -half), radius, radius);
    painter.fillPath(card, body);
    painter.setClipRect(QRectF(0, 0, width(), bodyTop()));
    painter.fillPath(card, tokens.chrome);
    painter.fillRect(QRectF(0, bodyTop() - 1, width(), 1), tokens.line);
    painter.setClipping(false);
    painter.strokePath(card, outline);
}

} // namespace fennik::ui
