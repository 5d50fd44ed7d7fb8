#include "app/ui/KeyCapStrip.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace fennik::ui {

namespace {

constexpr double capHeight = 20;
constexpr double capPadding = 6;
constexpr double gap = 6;
constexpr double radius = 4;
const QString nothing = QStringLiteral("bez zkratky");

} // namespace

KeyCapStrip::KeyCapStrip(QStringList legends, const Theme& theme, QWidget* parent)
    : QWidget(parent), legends_(std::move(legends)), theme_(theme) {
    setObjectName(QStringLiteral("keyCapStrip"));
    setAccessibleName(spoken());
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QString KeyCapStrip::spoken() const {
    return legends_.isEmpty() ? nothing : legends_.join(QStringLiteral(" nebo "));
}

double KeyCapStrip::capWidth(const QString& legend) const {
    const QFontMetricsF metrics(theme_.font(FontRole::small, QFont::Medium));
    const double width = std::ceil(metrics.horizontalAdvance(legend)) + 2 * theme_.px(capPadding);
    return std::max<double>(width, theme_.px(capHeight));
}

QSize KeyCapStrip::sizeHint() const {
    double width = 0;
    for (const auto& legend : legends_)
        width += capWidth(legend) + (width > 0 ? theme_.px(gap) : 0);
    if (legends_.isEmpty())
        width = QFontMetricsF(theme_.font(FontRole::small)).horizontalAdvance(nothing);
    return {int(std::ceil(width)), theme_.px(capHeight)};
}

void KeyCapStrip::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (legends_.isEmpty()) {
        painter.setFont(theme_.font(FontRole::small));
        painter.setPen(tokens.text3);
        painter.drawText(rect(), Qt::AlignRight | Qt::AlignVCenter, nothing);
        return;
    }
    painter.setFont(theme_.font(FontRole::small, QFont::Medium));
    double left = width() - sizeHint().width();
    for (const auto& legend : legends_) {
        const QRectF cap(left, 0, capWidth(legend), height());
        // The edge below is a little thicker, as if the cap stood out.
        painter.setPen(Qt::NoPen);
        painter.setBrush(tokens.line);
        painter.drawRoundedRect(cap, radius, radius);
        painter.setBrush(tokens.chrome);
        painter.drawRoundedRect(cap.adjusted(1, 1, -1, -2), radius - 1, radius - 1);
        painter.setPen(tokens.text2);
        painter.drawText(cap.adjusted(0, 0, 0, -1), Qt::AlignCenter, legend);
        left = cap.right() + theme_.px(gap);
    }
}

} // namespace fennik::ui
