#include "app/ui/ErrorStrip.h"

#include "app/ui/Text.h"

#include <QLabel>
#include <QPainter>

#include <algorithm>

namespace fennik::ui {

namespace {

constexpr int padding = 10;
constexpr int iconSide = 16;
constexpr int iconGap = 8;

} // namespace

ErrorStrip::ErrorStrip(const Theme& theme, Icons& icons, QWidget* parent)
    : QWidget(parent), theme_(theme), icons_(icons), text_(new QLabel(this)) {
    hide();
    setObjectName(QStringLiteral("errorStrip"));
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    text_->setFont(theme.font(FontRole::detail));
    connect(&theme, &Theme::changed, this, &ErrorStrip::takeTheme);
    takeTheme();
}

void ErrorStrip::takeTheme() {
    auto colors = text_->palette();
    colors.setColor(QPalette::WindowText, theme_.tokens().err);
    text_->setPalette(colors);
    update();
}

void ErrorStrip::showBelow(const QRect& field, const QString& message) {
    message_ = message;
    text_->setText(breakableText(message));
    text_->setAccessibleName(message);
    const int left = theme_.px(padding + iconSide + iconGap);
    const int edge = theme_.px(6);
    const int most = field.width() - left - theme_.px(padding);
    const int width =
        std::min(most, text_->fontMetrics().horizontalAdvance(message) + theme_.px(2));
    const int height = text_->heightForWidth(width);
    text_->setGeometry(left, edge, width, height);
    const int gap = theme_.px(5);
    const int whole = height + 2 * edge;
    const bool hasRoomBelow = field.bottom() + gap + whole <= parentWidget()->height();
    const int top = hasRoomBelow ? field.bottom() + gap : field.top() - gap - whole;
    setGeometry(field.left(), top, left + width + theme_.px(padding), whole);
    show();
    raise();
}

void ErrorStrip::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(tokens.errSoft);
    painter.drawRoundedRect(rect(), 7, 7);
    const int side = theme_.px(iconSide);
    painter.drawPixmap(
        theme_.px(padding), (height() - side) / 2,
        icons_.line(QStringLiteral("circle-alert"), side, tokens.err, devicePixelRatioF()));
}

} // namespace fennik::ui
