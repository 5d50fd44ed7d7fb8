#include "app/ui/IconButton.h"

#include "app/ui/HoverGround.h"

#include <QPainter>

#include <utility>

namespace fennik::ui {

IconButton::IconButton(QString icon, const QString& title, const QString& key, const Theme& theme,
                       Icons& icons, QWidget* parent)
    : QAbstractButton(parent), icon_(std::move(icon)), theme_(theme), icons_(icons) {
    setAccessibleName(title);
    setToolTip(key.isEmpty() ? title : QStringLiteral("%1 (%2)").arg(title, key));
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
}

void IconButton::setFilled(bool isFilled) {
    isFilled_ = isFilled;
    update();
}

void IconButton::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    if (isEnabled())
        paintHoverGround(painter, *this, rect(), 7, tokens);
    constexpr double disabledOpacity = 0.38;
    const int side = theme_.px(18);
    painter.setOpacity(isEnabled() ? 1 : disabledOpacity);
    painter.drawPixmap((width() - side) / 2, (height() - side) / 2,
                       icons_.line(icon_, side, isFilled_ ? tokens.markSolid : tokens.text2,
                                   devicePixelRatioF(),
                                   isFilled_ ? IconFill::solid : IconFill::none));
}

} // namespace fennik::ui
