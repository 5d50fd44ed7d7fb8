#include "app/ui/FunctionKeyCell.h"

#include "app/ui/HoverGround.h"
#include "app/ui/Text.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace fennik::ui {

FunctionKeyCell::FunctionKeyCell(const Theme& theme, Icons& icons, QWidget* parent)
    : QAbstractButton(parent), theme_(theme), icons_(icons) {
    setObjectName(QStringLiteral("functionKeyCell"));
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
}

void FunctionKeyCell::setCell(const FunctionKeyBar::Cell& cell) {
    if (cell == cell_)
        return;
    cell_ = cell;
    setAccessibleName(cell.title.isEmpty() ? cell.key : cell.title);
    setAccessibleDescription(cell.toolTip.isEmpty() ? cell.key : cell.toolTip);
    setToolTip(cell.toolTip.isEmpty() ? QString() : toolTipText(cell.toolTip));
    setEnabled(!cell.title.isEmpty() &&
               cell.availability == FunctionKeyBar::Availability::available);
    update();
}

void FunctionKeyCell::setRoom(Room room) {
    room_ = room;
    update();
}

void FunctionKeyCell::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isEnabled())
        paintHoverGround(painter, *this, rect().adjusted(2, 2, -2, -2), 7, tokens);
    constexpr double disabledOpacity = 0.38;
    painter.setOpacity(isEnabled() ? 1 : disabledOpacity);

    const auto keyFont = theme_.font(FontRole::small, QFont::DemiBold);
    const auto titleFont = theme_.font(FontRole::body);
    const QFontMetricsF titleMetrics(titleFont);
    const auto title = cell_.title.isEmpty() ? QStringLiteral("–") : cell_.title;
    const bool hasIcon = room_ != Room::titleOnly && !cell_.icon.isEmpty();
    const bool hasTitle = room_ != Room::iconOnly || !hasIcon;
    const double gap = theme_.px(8);
    const double side = theme_.px(16);
    const double keyWidth = QFontMetricsF(keyFont).horizontalAdvance(cell_.key);
    const double before = keyWidth + gap + (hasIcon ? side + gap - 1 : 0);
    const double inset = theme_.px(4);
    const double room = width() - before - 2 * inset;
    const auto shown = hasTitle ? titleMetrics.elidedText(title, Qt::ElideRight, room) : QString();
    const double total = before + titleMetrics.horizontalAdvance(shown);

    auto area = QRectF(rect());
    area.setLeft(std::max(inset, (width() - total) / 2));
    painter.setFont(keyFont);
    painter.setPen(tokens.text3);
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter, cell_.key);
    if (hasIcon) {
        const QPointF corner(std::round(area.left() + keyWidth + gap),
                             std::round((height() - side) / 2));
        painter.drawPixmap(corner,
                           icons_.line(cell_.icon, int(side), tokens.text2, devicePixelRatioF()));
    }
    area.setLeft(area.left() + before);
    painter.setFont(titleFont);
    painter.setPen(tokens.text);
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter, shown);
}

} // namespace fennik::ui
