#include "app/ui/UnfoldButton.h"

#include "app/ui/HoverGround.h"
#include "app/ui/TabularText.h"

#include <QPainter>

#include <cmath>

namespace fennik::ui {

namespace {

constexpr double chevron = 13;

} // namespace

UnfoldButton::UnfoldButton(const Theme& theme, Icons& icons, QWidget* parent)
    : QAbstractButton(parent), theme_(theme), icons_(icons) {
    setObjectName(QStringLiteral("jobUnfold"));
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
    setCheckable(true);
}

void UnfoldButton::setCount(std::size_t count) {
    setText(QString::number(static_cast<qulonglong>(count)));
    setVisible(count > 0);
    setAccessibleName(QStringLiteral("Chyby: ") + text());
    setToolTip(isChecked() ? QStringLiteral("Sbalit chyby") : QStringLiteral("Rozbalit chyby"));
}

QSize UnfoldButton::sizeHint() const {
    return {int(std::ceil(TabularText::width(font(), text()))) + theme_.px(12 + chevron),
            theme_.px(28)};
}

void UnfoldButton::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    paintHoverGround(painter, *this, rect(), 7, tokens);
    const int side = theme_.px(chevron);
    const int left = width() - side - theme_.px(4);
    painter.setFont(font());
    painter.setPen(tokens.err);
    TabularText::draw(painter, QRectF(0, 0, left - theme_.px(3), height()), Qt::AlignRight, text());
    painter.drawPixmap(
        left, (height() - side) / 2,
        icons_.line(isChecked() ? QStringLiteral("chevron-up") : QStringLiteral("chevron-down"),
                    side, tokens.err, devicePixelRatioF()));
}

} // namespace fennik::ui
