#include "app/ui/RowDelegate.h"

#include "app/ui/PanelTable.h"
#include "app/ui/TabularText.h"
#include "app/ui/Text.h"
#include "app/ui/Tick.h"

#include <QHeaderView>
#include <QPainter>

#include <algorithm>

namespace fennik::ui {

struct RowDelegate::Cell {
    FileItemView item;
    const app::LinkTarget* link; ///< none for what is no link, or not yet known
    QRectF text;                 ///< where the text stands
    QRectF whole;
    bool isSolid; ///< on the solid cursor
    bool isMarked;
};

namespace {

constexpr double hiddenIconOpacity = 0.55;

/// Room that an extension may take of a name's before it is cut off with the rest.
constexpr double extensionShare = 0.35;

} // namespace

RowDelegate::RowDelegate(PanelTable& table, const Theme& theme, Icons& icons)
    : QAbstractItemDelegate(&table),
      table_(table),
      theme_(theme),
      icons_(icons),
      geometry_(theme) {}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
    return {0, geometry_.rowHeight()};
}

void RowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
    const auto& model = *static_cast<const PanelTableModel*>(index.model());
    const auto& panel = model.panel();
    const auto row = static_cast<std::size_t>(index.row());
    const auto column = static_cast<PanelColumn>(index.column());
    const QRectF whole(option.rect);
    Cell cell{.item = panel.items().view(row),
              .link = nullptr,
              .text = geometry_.textRect(whole, column, *table_.horizontalHeader()),
              .whole = whole,
              .isSolid = row == panel.cursor() && table_.focusLook() == FocusLook::keyboard,
              .isMarked = false};
    cell.isMarked = panel.marks().isMarked(cell.item.name);
    if (cell.item.isLink())
        cell.link = panel.linkTarget(std::string(cell.item.name));
    if (column == PanelColumn::name)
        paintName(*painter, cell);
    else
        paintText(*painter, cell, model.cellText(cell.item, column), column);
}

QColor RowDelegate::markColor(const Cell& cell) const {
    return cell.isSolid ? theme_.tokens().markOnAccent : theme_.tokens().mark;
}

void RowDelegate::paintTick(QPainter& painter, const Cell& cell) const {
    const double side = theme_.px(14);
    const double left = cell.whole.left() + geometry_.gutter() - side - theme_.px(2);
    drawTick(painter, QRectF(left, cell.whole.center().y() - side / 2, side, side),
             markColor(cell));
}

void RowDelegate::paintName(QPainter& painter, const Cell& cell) const {
    const auto& tokens = theme_.tokens();
    const auto& item = cell.item;
    const int side = geometry_.icon();
    auto badge = IconBadge::none;
    if (item.isLink())
        badge = cell.link != nullptr && cell.link->isBroken ? IconBadge::broken : IconBadge::link;
    auto ground =
        table_.focusLook() == FocusLook::idle ? IconGround::panelInactive : IconGround::panel;
    if (cell.isSolid)
        ground = IconGround::accent;
    const auto icon =
        icons_.file(lookOf(item), badge, ground, side, painter.device()->devicePixelRatioF());
    painter.setOpacity(item.isHidden ? hiddenIconOpacity : 1);
    painter.drawPixmap(QPointF(cell.whole.left() + geometry_.gutter(),
                               cell.whole.top() + (cell.whole.height() - side) / 2),
                       icon);
    painter.setOpacity(1);

    if (cell.isMarked)
        paintTick(painter, cell);
    const auto weight = cell.isMarked  ? QFont::DemiBold
                        : cell.isSolid ? QFont::Medium
                                       : QFont::Normal;
    const auto font = theme_.font(FontRole::body, weight);
    const QFontMetricsF metrics(font);
    painter.setFont(font);
    const auto shade = cell.isSolid ? tokens.onAccent2 : tokens.text3;
    double left = cell.text.left();
    const double right = cell.text.right();
    const auto draw = [&](const QString& text, const QColor& color) {
        painter.setPen(color);
        painter.drawText(QRectF(left, cell.text.top(), right - left, cell.text.height()),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
        left += metrics.horizontalAdvance(text);
    };

    auto base = shownName(item.baseName());
    auto extension = shownName(item.name.substr(item.baseName().size()));
    const double room = right - left;
    if (metrics.horizontalAdvance(extension) > room * extensionShare)
        base += std::exchange(extension, QString());
    const double baseRoom = room - metrics.horizontalAdvance(extension);
    const auto nameColor = cell.isMarked   ? markColor(cell)
                           : cell.isSolid  ? tokens.onAccent
                           : item.isHidden ? tokens.text3
                                           : tokens.text;
    draw(metrics.elidedText(base, Qt::ElideRight, baseRoom), nameColor);
    draw(extension, cell.isMarked ? nameColor : shade);

    const double gap = theme_.px(10);
    const double least = theme_.px(40);
    if (cell.link == nullptr || right - left < gap + least)
        return;
    left += gap;
    painter.setFont(theme_.font(FontRole::small));
    const auto target = QStringLiteral("→ ") + shownName(cell.link->path);
    draw(QFontMetricsF(painter.font()).elidedText(target, Qt::ElideMiddle, right - left), shade);
}

void RowDelegate::paintText(QPainter& painter, const Cell& cell, const QString& text,
                            PanelColumn column) const {
    painter.setPen(detailColor(cell, column));
    if (column == PanelColumn::permissions) {
        painter.setFont(theme_.font(FontRole::fixed));
        painter.drawText(cell.text, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, text);
        return;
    }
    painter.setFont(theme_.font(FontRole::detail));
    TabularText::draw(painter, cell.text, Qt::AlignRight, text);
}

QColor RowDelegate::detailColor(const Cell& cell, PanelColumn column) const {
    const auto& tokens = theme_.tokens();
    if (cell.isSolid)
        return column == PanelColumn::permissions ? tokens.onAccent2 : tokens.onAccent;
    if (column == PanelColumn::permissions)
        return tokens.text3;
    if (column == PanelColumn::size) {
        const auto& panel = static_cast<const PanelTableModel*>(table_.model())->panel();
        if (panel.sizing().contains(cell.item.name))
            return tokens.accentText;
        if (cell.item.isFolderLike() && !panel.folderSizes().contains(cell.item.name))
            return tokens.control;
        if (cell.isMarked)
            return tokens.text;
    }
    return tokens.text2;
}

} // namespace fennik::ui
