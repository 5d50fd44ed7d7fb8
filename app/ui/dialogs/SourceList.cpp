#include "app/ui/dialogs/SourceList.h"

#include "app/ui/AccessibleRole.h"
#include "app/ui/TabularText.h"
#include "app/ui/Text.h"
#include "core/listing/Format.h"

#include <QPainter>

#include <cmath>
#include <utility>

namespace fennik::ui {

namespace {

constexpr double rowHeight = 23;
constexpr double padding = 4;
constexpr double sideMargin = 13;
constexpr double iconSide = 16;
constexpr double nameLeft = 36;

} // namespace

QString SourceItems::inWords() const {
    return count == 1 && !rows.empty() ? QStringLiteral("„%1“").arg(rows.front().name)
                                       : itemCount(count);
}

SourceList::SourceList(SourceItems items, const Theme& theme, Icons& icons, QWidget* parent)
    : QWidget(parent), items_(std::move(items)), theme_(theme), icons_(icons) {
    setObjectName(QStringLiteral("sourceList"));
    setAccessibleRole(*this, QAccessible::StaticText);
    QStringList spoken;
    for (const auto& row : items_.rows)
        spoken << (row.size.isEmpty() ? row.name : row.name + QStringLiteral(", ") + row.size);
    if (!rest().isEmpty())
        spoken << rest();
    setAccessibleName(spoken.join(QStringLiteral("; ")));
    const auto lines = items_.rows.size() + (rest().isEmpty() ? 0 : 1);
    setFixedHeight(2 * theme.px(padding) + int(lines) * theme.px(rowHeight));
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QString SourceList::rest() const {
    const auto more = items_.count - std::int64_t(items_.rows.size());
    return more > 0 ? QStringLiteral("a další ") + fromUtf8(Format::grouped(more)) : QString();
}

void SourceList::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(tokens.line);
    painter.setBrush(tokens.chrome);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 7, 7);
    const int side = theme_.px(sideMargin);
    QRect area(side, theme_.px(padding), width() - 2 * side, theme_.px(rowHeight));
    for (const auto& row : items_.rows) {
        paintRow(painter, row, area);
        area.translate(0, area.height());
    }
    painter.setFont(theme_.font(FontRole::detail));
    painter.setPen(tokens.text2);
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter, rest());
}

void SourceList::paintRow(QPainter& painter, const SourceItems::Row& row, const QRect& area) const {
    const auto& tokens = theme_.tokens();
    const int icon = theme_.px(iconSide);
    painter.drawPixmap(
        area.left(), area.top() + (area.height() - icon) / 2,
        icons_.file(row.look, row.badge, IconGround::panel, icon, devicePixelRatioF()));
    const auto sizeFont = theme_.font(FontRole::detail);
    const int sizeWidth = int(std::ceil(TabularText::width(sizeFont, row.size)));
    painter.setFont(sizeFont);
    painter.setPen(tokens.text2);
    TabularText::draw(painter, area, Qt::AlignRight, row.size);
    const auto nameFont = theme_.font(FontRole::body);
    const int left = theme_.px(nameLeft) - theme_.px(sideMargin);
    const auto room = area.adjusted(left, 0, sizeWidth == 0 ? 0 : -sizeWidth - theme_.px(12), 0);
    painter.setFont(nameFont);
    painter.setPen(tokens.text);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     QFontMetrics(nameFont).elidedText(row.name, Qt::ElideMiddle, room.width()));
}

} // namespace fennik::ui
