#include "app/ui/Crumb.h"

#include "app/ui/HoverGround.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace fennik::ui {

namespace {

constexpr double padding = 5;
constexpr double iconSide = 16;
constexpr double iconGap = 6;

} // namespace

Crumb::Crumb(const QString& title, const Theme& theme, QWidget* parent)
    : QAbstractButton(parent), title_(title), theme_(theme) {
    setAccessibleName(title);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
}

void Crumb::setIcon(FileLook look, Icons& icons) {
    look_ = look;
    icons_ = &icons;
    update();
}

int Crumb::iconRoom() const {
    return look_ ? theme_.px(iconSide) + theme_.px(iconGap) : 0;
}

void Crumb::setDropTarget(bool isTarget) {
    isDropTarget_ = isTarget;
    update();
}

void Crumb::setEmphasis(QFont::Weight weight) {
    weight_ = weight;
    updateGeometry();
    update();
}

QSize Crumb::sizeHint() const {
    const QFontMetricsF metrics(theme_.font(FontRole::body, weight_));
    const double width = metrics.horizontalAdvance(title_) + 2 * theme_.px(padding);
    return {int(std::ceil(width)) + 1 + iconRoom(), theme_.px(24)};
}

void Crumb::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isDropTarget_) {
        painter.setPen(QPen(tokens.accent, 1, Qt::DashLine));
        painter.setBrush(tokens.accentSoft);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 2.5, -0.5, -2.5), 5, 5);
    } else {
        paintHoverGround(painter, *this, rect().adjusted(0, 2, 0, -2), 5, tokens);
    }
    const int left = theme_.px(padding);
    if (look_) {
        const int side = theme_.px(iconSide);
        painter.drawPixmap(
            left, (height() - side) / 2,
            icons_->file(*look_, IconBadge::none, IconGround::panel, side, devicePixelRatioF()));
    }
    const auto font = theme_.font(FontRole::body, weight_);
    const auto inner = QRectF(rect()).adjusted(left + iconRoom(), 0, -left + 1, 0);
    painter.setFont(font);
    painter.setPen(weight_ == QFont::Normal ? tokens.text2 : tokens.text);
    painter.drawText(inner, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetricsF(font).elidedText(title_, Qt::ElideMiddle, inner.width()));
}

} // namespace fennik::ui
