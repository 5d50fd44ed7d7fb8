#include "app/ui/settings/CollisionStrip.h"

#include <QFontMetrics>
#include <QPainter>

namespace fennik::ui {

namespace {

constexpr double padding = 12;
constexpr double edge = 8;
constexpr double iconSide = 16;
constexpr double iconGap = 10;
constexpr double radius = 7;
constexpr double preferredWidth = 400;

QFont stripFont(const Theme& theme) {
    return theme.font(FontRole::body, QFont::Medium);
}

} // namespace

CollisionStrip::CollisionStrip(const Theme& theme, Icons& icons, QWidget* parent)
    : QAbstractButton(parent), theme_(theme), icons_(icons) {
    setObjectName(QStringLiteral("collisionStrip"));
    setText(
        QStringLiteral("Některé zkratky mají víc akcí – použije se jen jedna. Opravte je níže."));
    setAccessibleName(text());
    setAccessibleDescription(QStringLiteral("Přejde na první z nich"));
    setFocusPolicy(Qt::StrongFocus);
    auto policy = sizePolicy();
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QRect CollisionStrip::textRect(int width) const {
    const int left = theme_.px(padding + iconSide + iconGap);
    const QRect room(left, theme_.px(edge), width - left - theme_.px(padding), 10'000);
    return QFontMetrics(stripFont(theme_)).boundingRect(room, Qt::TextWordWrap, text());
}

int CollisionStrip::heightForWidth(int width) const {
    return textRect(width).height() + 2 * theme_.px(edge);
}

QSize CollisionStrip::sizeHint() const {
    const int width = theme_.px(preferredWidth);
    return {width, heightForWidth(width)};
}

void CollisionStrip::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(hasFocus() ? QPen(tokens.accent, 2) : QPen(Qt::NoPen));
    painter.setBrush(tokens.warnSoft);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);
    const int side = theme_.px(iconSide);
    painter.drawPixmap(
        theme_.px(padding), (height() - side) / 2,
        icons_.line(QStringLiteral("triangle-alert"), side, tokens.warn, devicePixelRatioF()));
    painter.setFont(stripFont(theme_));
    painter.setPen(tokens.warn);
    painter.drawText(textRect(width()), Qt::TextWordWrap, text());
}

} // namespace fennik::ui
