#include "app/ui/RunState.h"

#include <QAccessible>
#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace fennik::ui {

namespace {

constexpr double padding = 8;
constexpr double iconRoom = 20; ///< with what lies behind it
constexpr double iconSide = 14;
constexpr double groundHeight = 20;

} // namespace

RunState::RunState(const Theme& theme, Icons& icons, QWidget* parent)
    : QLabel(parent), theme_(theme), icons_(icons) {
    setObjectName(QStringLiteral("commandState"));
    setTextFormat(Qt::PlainText);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void RunState::show(Look look, const QString& text, const QString& spoken) {
    look_ = look;
    update();
    if (accessibleName() == spoken && text == this->text())
        return;
    setText(text);
    setAccessibleName(spoken);
    updateGeometry();
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

QSize RunState::sizeHint() const {
    const QFontMetricsF metrics(theme_.font(FontRole::detail, QFont::Medium));
    return {int(std::ceil(metrics.horizontalAdvance(text()))) + theme_.px(2 * padding + iconRoom),
            theme_.px(groundHeight)};
}

void RunState::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    auto color = tokens.accentText;
    auto ground = tokens.accentSoft;
    auto icon = QStringLiteral("loader-circle");
    if (look_ == Look::good) {
        color = tokens.ok;
        ground = tokens.okSoft;
        icon = QStringLiteral("circle-check");
    } else if (look_ == Look::bad) {
        color = tokens.err;
        ground = tokens.errSoft;
        icon = QStringLiteral("circle-alert");
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(rect(), 5, 5);
    const int side = theme_.px(iconSide);
    painter.drawPixmap(theme_.px(padding), (height() - side) / 2,
                       icons_.line(icon, side, color, devicePixelRatioF()));
    painter.setFont(theme_.font(FontRole::detail, QFont::Medium));
    painter.setPen(color);
    painter.drawText(rect().adjusted(theme_.px(padding + iconRoom), 0, 0, 0),
                     Qt::AlignLeft | Qt::AlignVCenter, text());
}

} // namespace fennik::ui
