#include "app/ui/PanelHeader.h"

#include "app/ui/PanelGeometry.h"
#include "app/ui/StyleSheet.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>

#include <array>

namespace fennik::ui {

namespace {

/// In the order of `allSortKeys`.
constexpr std::array sortTitles{"Název", "Přípona", "Velikost", "Změněno", "Práva"};

bool isSortedBy(PanelColumn column, SortKey key) {
    return sortKeyOf(column) == key || (column == PanelColumn::name && key == SortKey::ext);
}

QPainterPath chevron(QPointF middle, bool up) {
    constexpr double half = 3.5;
    const double rise = up ? half / 2 : -half / 2;
    QPainterPath path(middle + QPointF(-half, rise));
    path.lineTo(middle + QPointF(0, -rise));
    path.lineTo(middle + QPointF(half, rise));
    return path;
}

} // namespace

PanelHeader::PanelHeader(app::PanelModel& panel, const Theme& theme, QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent), panel_(panel), theme_(theme) {
    setObjectName(QStringLiteral("panelHeader"));
    setSectionsClickable(true);
    setHighlightSections(false);
    setFocusPolicy(Qt::NoFocus);
    setSectionResizeMode(QHeaderView::Fixed);
    setMinimumSectionSize(1);
    connect(this, &QHeaderView::sectionClicked, this, [this](int section) {
        panel_.chooseSort(sortKeyOf(static_cast<PanelColumn>(section)));
    });
}

int PanelHeader::gapBelow() const {
    return theme_.px(4);
}

void PanelHeader::setGround(const QColor& rows) {
    rowGround_ = rows;
    viewport()->update();
}

QSize PanelHeader::sizeHint() const {
    return {0, theme_.px(25) + gapBelow()};
}

void PanelHeader::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(viewport()->rect(), rowGround_);
    const int bottom = height() - gapBelow();
    painter.fillRect(0, bottom - 1, width(), 1, theme_.tokens().line);
    for (int section = 0; section < count(); ++section) {
        if (!isSectionHidden(section))
            paintColumn(painter, static_cast<PanelColumn>(section));
    }
}

void PanelHeader::paintColumn(QPainter& painter, PanelColumn column) const {
    const int section = static_cast<int>(column);
    const auto& tokens = theme_.tokens();
    const auto sort = panel_.tab().sort;
    const bool isSorted = isSortedBy(column, sort.key);
    const bool isName = column == PanelColumn::name;
    const auto title = model()->headerData(section, Qt::Horizontal).toString();
    const auto font = theme_.font(FontRole::small, isSorted ? QFont::DemiBold : QFont::Medium);
    const double chevronRoom = isSorted ? theme_.px(14) : 0;

    QRectF cell(sectionViewportPosition(section), 0, sectionSize(section), height() - gapBelow());
    cell = PanelGeometry(theme_).textRect(cell, column, *this);
    painter.setFont(font);
    painter.setPen(isSorted ? tokens.text : tokens.text2);
    const double textWidth = QFontMetricsF(font).horizontalAdvance(title);
    const double left = isName ? cell.left() : cell.right() - textWidth - chevronRoom;
    painter.drawText(QRectF(left, cell.top(), textWidth + 1, cell.height()),
                     Qt::AlignLeft | Qt::AlignVCenter, title);
    if (!isSorted)
        return;
    painter.setPen(QPen(tokens.text, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    const QPointF middle(left + textWidth + chevronRoom - theme_.px(5), cell.center().y());
    painter.drawPath(chevron(middle, sort.ascending));
}

void PanelHeader::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    menu.setAccessibleName(QStringLiteral("Řazení"));
    wear(menu, theme_, StyleSheet::menus);
    const auto sort = panel_.tab().sort;
    for (std::size_t i = 0; i < allSortKeys.size(); ++i) {
        const bool isCurrent = allSortKeys[i] == sort.key;
        auto title = QString::fromUtf8(sortTitles[i]);
        if (isCurrent)
            title += sort.ascending ? QStringLiteral("  ↑") : QStringLiteral("  ↓");
        auto* action =
            menu.addAction(title, this, [this, key = allSortKeys[i]] { panel_.chooseSort(key); });
        action->setCheckable(true);
        action->setChecked(isCurrent);
    }
    emit menuOpened(true);
    menu.exec(event->globalPos());
    emit menuOpened(false);
}

} // namespace fennik::ui
