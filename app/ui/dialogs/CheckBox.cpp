#include "app/ui/dialogs/CheckBox.h"

#include "app/ui/Tick.h"

#include <QPainter>

namespace fennik::ui {

namespace {

constexpr double boxSide = 17;
constexpr double textLeft = 26;

} // namespace

CheckBox::CheckBox(const QString& title, const Theme& theme, QWidget* parent)
    : QCheckBox(title, parent), theme_(theme) {
    setFont(theme.font(FontRole::body));
    setAttribute(Qt::WA_Hover);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QSize CheckBox::sizeHint() const {
    return {theme_.px(textLeft) + fontMetrics().horizontalAdvance(text()) + 1, theme_.px(24)};
}

void CheckBox::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double side = theme_.px(boxSide);
    const QRectF box(0, (height() - side) / 2, side, side);
    const double line = hasFocus() ? 2 : 1;
    const auto ground = isChecked() ? tokens.accent : underMouse() ? tokens.hover : tokens.field;
    painter.setPen(QPen(hasFocus() || isChecked() ? tokens.accent : tokens.control, line));
    painter.setBrush(ground);
    painter.drawRoundedRect(box.adjusted(line / 2, line / 2, -line / 2, -line / 2), 4, 4);
    if (isChecked()) {
        const double inset = theme_.px(3);
        drawTick(painter, box.adjusted(inset, inset, -inset, -inset), tokens.onAccent);
    }
    if (isChecked() && hasFocus()) { // a ring of its own, as the box is already blue
        painter.setPen(QPen(tokens.onAccent, 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(box.adjusted(1.5, 1.5, -1.5, -1.5), 3, 3);
    }
    painter.setFont(font());
    painter.setPen(tokens.text);
    painter.drawText(rect().adjusted(theme_.px(textLeft), 0, 0, 0),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text());
}

} // namespace fennik::ui
