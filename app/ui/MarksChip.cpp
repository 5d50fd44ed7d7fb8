#include "app/ui/MarksChip.h"

#include "app/ui/TabularText.h"
#include "app/ui/Tick.h"

#include <QAccessible>
#include <QPainter>

#include <cmath>

namespace fennik::ui {

namespace {

constexpr double padding = 8;
constexpr double tickRoom = 17;
constexpr double tickSide = 12;

} // namespace

MarksChip::MarksChip(const Theme& theme, QWidget* parent) : QLabel(parent), theme_(theme) {
    setObjectName(QStringLiteral("marksChip"));
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
    hide();
}

void MarksChip::show(const QString& text) {
    if (text == this->text())
        return;
    setText(text);
    setVisible(!text.isEmpty());
    updateGeometry();
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

QSize MarksChip::sizeHint() const {
    const double width = TabularText::width(textFont(), text()) + theme_.px(2 * padding + tickRoom);
    return {int(std::ceil(width)), theme_.px(20)};
}

QSize MarksChip::minimumSizeHint() const {
    return {0, theme_.px(20)};
}

void MarksChip::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double high = theme_.px(20);
    const QRectF ground(0, (height() - high) / 2, width(), high);
    painter.setPen(Qt::NoPen);
    painter.setBrush(tokens.markSoft);
    painter.drawRoundedRect(ground, 5, 5);
    const double side = theme_.px(tickSide);
    drawTick(painter, QRectF(theme_.px(padding), ground.center().y() - side / 2, side, side),
             tokens.mark);
    painter.setFont(textFont());
    painter.setPen(tokens.mark);
    TabularText::draw(painter,
                      ground.adjusted(theme_.px(padding + tickRoom), 0, -theme_.px(padding) + 1, 0),
                      Qt::AlignLeft, text());
}

} // namespace fennik::ui
