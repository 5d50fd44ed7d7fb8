#include "app/ui/ArchiveBadge.h"

#include <QPainter>

namespace fennik::ui {

namespace {

constexpr double padding = 7;
constexpr double iconSide = 13;
constexpr double iconRoom = 17;
constexpr double badgeHeight = 18;

} // namespace

ArchiveBadge::ArchiveBadge(const Theme& theme, Icons& icons, QWidget* parent)
    : QLabel(parent), theme_(theme), icons_(icons) {
    setObjectName(QStringLiteral("archiveBadge"));
    setTextFormat(Qt::PlainText);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QSize ArchiveBadge::sizeHint() const {
    const int width = QFontMetrics(textFont()).horizontalAdvance(text());
    return {width + theme_.px(2 * padding + iconRoom) + 1, theme_.px(badgeHeight)};
}

void ArchiveBadge::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(tokens.okSoft);
    painter.drawRoundedRect(rect(), 5, 5);
    const int side = theme_.px(iconSide);
    painter.drawPixmap(
        theme_.px(padding), (height() - side) / 2,
        icons_.line(QStringLiteral("archive"), side, tokens.ok, devicePixelRatioF()));
    painter.setFont(textFont());
    painter.setPen(tokens.ok);
    painter.drawText(rect().adjusted(theme_.px(padding + iconRoom), 0, 0, 0),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text());
}

} // namespace fennik::ui
