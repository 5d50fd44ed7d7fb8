#include "app/ui/DropHint.h"

#include "app/ui/AccessibleRole.h"
#include "app/ui/Shadow.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace fennik::ui {

namespace {

constexpr double padding = 10;
constexpr double gap = 8;
constexpr double signSide = 16;
constexpr double radius = 7;

} // namespace

DropHint::DropHint(const Theme& theme, Icons& icons, QWidget* parent)
    : QWidget(parent), theme_(theme), icons_(icons) {
    setObjectName(QStringLiteral("dropHint"));
    setAccessibleRole(*this, QAccessible::ToolTip);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    new Shadow(*this, Shadow::Depth::menu, radius, theme);
}

void DropHint::showAt(const QPoint& mouse, TransferKind kind, const QString& folder) {
    kind_ = kind;
    text_ = (kind == TransferKind::move ? QStringLiteral("Přesunout do složky „%1“")
                                        : QStringLiteral("Kopírovat do složky „%1“"))
                .arg(folder);
    setAccessibleName(text_);
    const QFontMetricsF metrics(theme_.font(FontRole::body));
    const int wide =
        theme_.px(2 * padding + signSide + gap) + int(std::ceil(metrics.horizontalAdvance(text_)));
    resize(std::min(wide, parentWidget()->width()), theme_.px(32));
    // Below the picture of what is dragged, or above the mouse, and always inside.
    const QPoint below = mouse + QPoint(theme_.px(14), theme_.px(54));
    const bool fitsBelow = below.y() + height() <= parentWidget()->height();
    const int above = mouse.y() - height() - theme_.px(8);
    move(std::clamp(below.x(), 0, parentWidget()->width() - width()),
         fitsBelow ? below.y() : std::max(0, above));
    raise();
    show();
    update();
}

void DropHint::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(tokens.line);
    painter.setBrush(tokens.raised);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);

    const int side = theme_.px(signSide);
    const QRect sign(theme_.px(padding), (height() - side) / 2, side, side);
    painter.setPen(Qt::NoPen);
    painter.setBrush(tokens.mark);
    painter.drawEllipse(sign);
    const int inner = theme_.px(12);
    const auto icon =
        kind_ == TransferKind::move ? QStringLiteral("arrow-right") : QStringLiteral("plus");
    painter.drawPixmap(sign.center().x() - inner / 2 + 1, sign.center().y() - inner / 2 + 1,
                       icons_.line(icon, inner, tokens.raised, devicePixelRatioF()));

    const auto font = theme_.font(FontRole::body);
    const auto area =
        QRectF(rect()).adjusted(theme_.px(padding + signSide + gap), 0, -theme_.px(padding) + 1, 0);
    painter.setFont(font);
    painter.setPen(tokens.text2);
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetricsF(font).elidedText(text_, Qt::ElideMiddle, area.width()));
}

} // namespace fennik::ui
