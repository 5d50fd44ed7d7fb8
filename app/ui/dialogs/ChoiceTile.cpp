#include "app/ui/dialogs/ChoiceTile.h"

#include <QPainter>

#include <utility>

namespace fennik::ui {

namespace {

constexpr double tileHeight = 53;
constexpr double padding = 14;
constexpr double iconSide = 20;
constexpr double textLeft = 43;
constexpr double capSide = 20;

} // namespace

ChoiceTile::ChoiceTile(Texts texts, const Theme& theme, Icons& icons, QWidget* parent)
    : QAbstractButton(parent), texts_(std::move(texts)), theme_(theme), icons_(icons) {
    setText(texts_.title);
    setAccessibleName(texts_.title);
    setAccessibleDescription(texts_.detail + QStringLiteral(" (%1)").arg(texts_.letter));
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QSize ChoiceTile::sizeHint() const {
    return {theme_.px(200), theme_.px(tileHeight)};
}

void ChoiceTile::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double line = hasFocus() ? 2 : 1;
    const auto ground = isDown()       ? tokens.pressed
                        : hasFocus()   ? tokens.accentSoft
                        : underMouse() ? tokens.hover
                                       : tokens.raised;
    painter.setPen(QPen(hasFocus() ? tokens.accent : tokens.control, line));
    painter.setBrush(ground);
    const double half = line / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), 8, 8);

    const int icon = theme_.px(iconSide);
    painter.drawPixmap(theme_.px(padding) - 1, (height() - icon) / 2,
                       icons_.line(texts_.icon, icon, hasFocus() ? tokens.accentText : tokens.text2,
                                   devicePixelRatioF()));

    const int cap = theme_.px(capSide);
    const QRectF key(width() - theme_.px(padding) - cap, (height() - cap) / 2.0, cap, cap);
    painter.setPen(tokens.line);
    painter.setBrush(tokens.chrome);
    painter.drawRoundedRect(key.adjusted(0.5, 0.5, -0.5, -0.5), 5, 5);
    painter.setFont(theme_.font(FontRole::small, QFont::Medium));
    painter.setPen(tokens.text2);
    painter.drawText(key, Qt::AlignCenter, texts_.letter);

    const int left = theme_.px(textLeft);
    const int room = int(key.left()) - theme_.px(6) - left;
    const auto draw = [&](const QString& text, const QFont& font, int top) {
        painter.setFont(font);
        painter.drawText(QRect(left, top, room, theme_.px(16)), Qt::AlignLeft | Qt::AlignVCenter,
                         QFontMetrics(font).elidedText(text, Qt::ElideRight, room));
    };
    const int middle = height() / 2;
    painter.setPen(tokens.text);
    draw(texts_.title, theme_.font(FontRole::body, QFont::DemiBold), middle - theme_.px(17));
    painter.setPen(tokens.text2);
    draw(texts_.detail, theme_.font(FontRole::detail), middle + theme_.px(1));
}

} // namespace fennik::ui
