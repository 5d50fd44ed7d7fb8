#include "app/ui/PanelTable.h"

#include "app/ui/PanelHeader.h"
#include "app/ui/RowDelegate.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace fennik::ui {

PanelTable::PanelTable(app::PanelModel& panel, const Theme& theme, Icons& icons, QWidget* parent)
    : QTableView(parent),
      panel_(panel),
      theme_(theme),
      geometry_(theme),
      header_(new PanelHeader(panel, theme, this)) {
    setObjectName(QStringLiteral("panelTable"));
    setModel(new PanelTableModel(panel, this));
    setItemDelegate(new RowDelegate(*this, theme, icons));
    setHorizontalHeader(header_);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    setFrameShape(QFrame::NoFrame);
    setShowGrid(false);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    setWordWrap(false);
    setTabKeyNavigation(false);
    connect(&panel_, &app::PanelModel::changed, this, &PanelTable::takeChanges);
    connect(&theme_, &Theme::changed, this, &PanelTable::takeTheme);
    connect(header_, &PanelHeader::menuOpened, this, &PanelTable::menuOpened);
    takeTheme();
}

void PanelTable::takeTheme() {
    verticalHeader()->setDefaultSectionSize(geometry_.rowHeight());
    verticalScrollBar()->setStyleSheet(theme_.styleSheet());
    setFocusLook(look_);
}

void PanelTable::setFocusLook(FocusLook look) {
    look_ = look;
    const auto& tokens = theme_.tokens();
    const auto ground = look == FocusLook::idle ? tokens.panelInactive : tokens.panel;
    auto colors = palette();
    colors.setColor(QPalette::Base, ground);
    setPalette(colors);
    header_->setGround(ground);
    viewport()->update();
}

int PanelTable::rowsPerPage() const {
    return std::max(1, viewport()->height() / geometry_.rowHeight());
}

int PanelTable::rowsBottom() const {
    const int below = rowViewportPosition(model()->rowCount() - 1) + geometry_.rowHeight();
    const int bottom = model()->rowCount() == 0 ? 0 : std::min(below, viewport()->height());
    return viewport()->y() + bottom;
}

std::pair<int, int> PanelTable::rowsInView() const {
    const int first = std::max(0, rowAt(0));
    return {first, std::min(first + rowsPerPage() + 2, model()->rowCount())};
}

void PanelTable::takeChanges(app::PanelChanges changes) {
    using app::PanelChange;
    if (changes & (PanelChange::items | PanelChange::cursor | PanelChange::state))
        showCursor();
    if (changes.testFlag(PanelChange::items))
        wantLinkTargets();
    if (changes & (PanelChange::linkTargets | PanelChange::items))
        viewport()->update();
    if (changes.testFlag(PanelChange::tabs))
        header_->viewport()->update();
}

void PanelTable::showCursor() {
    const int row = static_cast<int>(panel_.cursor());
    if (row >= model()->rowCount())
        return;
    updateRow(shownCursor_);
    shownCursor_ = row;
    updateRow(row);
    setCurrentIndex(model()->index(row, 0));
    scrollTo(currentIndex(), QAbstractItemView::EnsureVisible);
}

QRect PanelTable::rowRect(int row) const {
    return {0, rowViewportPosition(row), viewport()->width(), geometry_.rowHeight()};
}

void PanelTable::updateRow(int row) {
    if (row >= 0 && row < model()->rowCount())
        viewport()->update(rowRect(row));
}

void PanelTable::wantLinkTargets() {
    const auto [first, last] = rowsInView();
    panel_.wantLinkTargets(static_cast<std::size_t>(first), static_cast<std::size_t>(last));
}

void PanelTable::scrollContentsBy(int dx, int dy) {
    QTableView::scrollContentsBy(dx, dy);
    wantLinkTargets();
}

void PanelTable::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(viewport());
        paintCursor(painter);
    }
    QTableView::paintEvent(event);
}

void PanelTable::paintCursor(QPainter& painter) const {
    const int row = static_cast<int>(panel_.cursor());
    if (row >= model()->rowCount())
        return;
    const auto& tokens = theme_.tokens();
    constexpr double radius = 5;
    const double inset = theme_.px(4);
    const auto rect = QRectF(rowRect(row)).adjusted(inset, 0, -inset, 0);
    painter.setRenderHint(QPainter::Antialiasing);
    if (look_ == FocusLook::keyboard) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(tokens.accent);
        painter.drawRoundedRect(rect, radius, radius);
        return;
    }
    constexpr double outline = 1.5;
    const bool isNear = look_ == FocusLook::near;
    painter.setPen(QPen(isNear ? tokens.accent : tokens.control, outline));
    painter.setBrush(isNear ? QBrush(tokens.accentSoft) : QBrush(Qt::NoBrush));
    constexpr double half = outline / 2;
    painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), radius, radius);
}

void PanelTable::resizeEvent(QResizeEvent* event) {
    geometry_.layOut(*header_, viewport()->width());
    QTableView::resizeEvent(event);
    wantLinkTargets();
}

void PanelTable::keyPressEvent(QKeyEvent* event) {
    const auto row = static_cast<std::ptrdiff_t>(panel_.cursor());
    const bool isPlain = !(event->modifiers() & ~Qt::KeypadModifier);
    const bool hasRows = model()->rowCount() > 0;
    switch (isPlain && hasRows ? event->key() : 0) {
    case Qt::Key_Up:
        panel_.setCursor(row - 1);
        break;
    case Qt::Key_Down:
        panel_.setCursor(row + 1);
        break;
    case Qt::Key_PageUp:
        panel_.setCursor(row - std::max(1, rowsPerPage() - 1));
        break;
    case Qt::Key_PageDown:
        panel_.setCursor(row + std::max(1, rowsPerPage() - 1));
        break;
    case Qt::Key_Home:
        panel_.setCursor(0);
        break;
    case Qt::Key_End:
        panel_.setCursor(model()->rowCount() - 1);
        break;
    default:
        event->ignore();
        emit keyPressed(event);
        break;
    }
}

void PanelTable::focusInEvent(QFocusEvent* event) {
    QTableView::focusInEvent(event);
    emit focused();
}

void PanelTable::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    if (const int row = rowAt(event->pos().y()); row >= 0)
        panel_.setCursor(row);
}

void PanelTable::mouseMoveEvent(QMouseEvent* event) {
    event->accept();
}

void PanelTable::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
}

void PanelTable::mouseDoubleClickEvent(QMouseEvent* event) {
    // A listing that came between the two clicks may have moved the rows.
    const bool isOnCursor = rowAt(event->pos().y()) == static_cast<int>(panel_.cursor());
    if (event->button() == Qt::LeftButton && isOnCursor)
        panel_.openItem();
}

} // namespace fennik::ui
