#include "app/ui/PanelTable.h"

#include "app/ui/PanelHeader.h"
#include "app/ui/RowDelegate.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

namespace fennik::ui {

namespace {

/// How long typed letters wait for the next one.
constexpr auto searchPatience = std::chrono::milliseconds(1200);

} // namespace

PanelTable::PanelTable(app::PanelModel& panel, const Theme& theme, Icons& icons, QWidget* parent)
    : QTableView(parent),
      panel_(panel),
      theme_(theme),
      geometry_(theme),
      header_(new PanelHeader(panel, theme, this)),
      searchTimer_(new QTimer(this)) {
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
    setAutoScroll(false); // the cursor is brought into view by `showCursor` alone
    searchTimer_->setSingleShot(true);
    searchTimer_->setInterval(searchPatience);
    connect(searchTimer_, &QTimer::timeout, this, &PanelTable::endSearch);
    connect(&panel_, &app::PanelModel::changed, this, &PanelTable::takeChanges);
    connect(&theme_, &Theme::changed, this, &PanelTable::takeTheme);
    connect(header_, &PanelHeader::menuOpened, this, &PanelTable::menuOpened);
    takeTheme();
}

void PanelTable::takeTheme() {
    setFocusLook(look_);
    if (verticalHeader()->defaultSectionSize() == geometry_.rowHeight())
        return;
    verticalHeader()->setDefaultSectionSize(geometry_.rowHeight());
    showCursor();
    wantLinkTargets();
    noteView();
    emit itemsPlaced();
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
    if (changes.testFlag(PanelChange::items))
        takeItems();
    else if (changes & (PanelChange::cursor | PanelChange::state))
        showCursor();
    if (changes & (PanelChange::linkTargets | PanelChange::items | PanelChange::sizes))
        viewport()->update();
    if (changes.testFlag(PanelChange::marks))
        updateMarks();
    if (changes.testFlag(PanelChange::tabs))
        header_->viewport()->update();
}

void PanelTable::takeItems() {
    const bool isSameFolder = panel_.location().path() == shownFolder_;
    const int cursor = static_cast<int>(panel_.cursor());
    const bool cursorWasInView =
        shownCursor_ >= topRow_ && shownCursor_ < topRow_ + rowsPerPage() + 1;
    if (isSameFolder) {
        // What stays in view stands still: the cursor, or else the first row.
        const auto top = panel_.items().rowOf(topName_);
        verticalScrollBar()->setValue(cursorWasInView ? cursor - (shownCursor_ - topRow_)
                                                      : static_cast<int>(top.value_or(0)));
    } else {
        endSearch();
    }
    shownFolder_ = panel_.location().path();
    if (!isSameFolder || cursorWasInView)
        showCursor();
    else
        shownCursor_ = cursor;
    wantLinkTargets();
    noteView();
    emit itemsPlaced();
}

void PanelTable::noteView() {
    topRow_ = std::max(0, rowAt(0));
    const auto row = static_cast<std::size_t>(topRow_);
    topName_ = row < panel_.items().size() ? std::string(panel_.items().view(row).name) : "";
    markedInView_ = markedInView();
}

std::vector<int> PanelTable::markedInView() const {
    std::vector<int> rows;
    const auto [first, last] = rowsInView();
    for (int row = first; row < last; ++row) {
        if (panel_.marks().isMarked(panel_.items().view(static_cast<std::size_t>(row)).name))
            rows.push_back(row);
    }
    return rows;
}

void PanelTable::updateMarks() {
    const auto before = std::exchange(markedInView_, markedInView());
    std::vector<int> changed;
    std::ranges::set_symmetric_difference(before, markedInView_, std::back_inserter(changed));
    for (const int row : changed)
        updateRow(row);
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

QRect PanelTable::cursorRect() const {
    const int row = static_cast<int>(panel_.cursor());
    return row < model()->rowCount() ? rowRect(row) : QRect();
}

QRect PanelTable::nameRect(std::string_view name) const {
    const auto row = panel_.items().rowOf(name);
    if (!row)
        return {};
    return rowRect(static_cast<int>(*row))
        .adjusted(geometry_.nameLeft(), 0, -geometry_.rightMargin(), 0);
}

std::string PanelTable::baseNameOf(const std::string& name) const {
    const auto row = panel_.items().rowOf(name);
    return row ? std::string(panel_.items().view(*row).baseName()) : name;
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
    noteView();
}

void PanelTable::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(viewport());
        paintMarks(painter);
        paintCursor(painter);
        paintDropRow(painter);
    }
    QTableView::paintEvent(event);
}

void PanelTable::paintMarks(QPainter& painter) const {
    for (const int row : markedInView()) {
        // Under the filled cursor the tint gives way.
        const bool isCovered = row == static_cast<int>(panel_.cursor()) && look_ != FocusLook::idle;
        if (!isCovered)
            painter.fillRect(rowRect(row), theme_.tokens().markSoft);
    }
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
    const double outline = theme_.contrast() == Contrast::high ? 2 : 1.5;
    const bool isNear = look_ == FocusLook::near;
    painter.setPen(QPen(isNear ? tokens.accent : tokens.control, outline));
    painter.setBrush(isNear ? QBrush(tokens.accentSoft) : QBrush(Qt::NoBrush));
    const double half = outline / 2;
    painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), radius, radius);
}

void PanelTable::setDropRow(int row) {
    updateRow(dropRow_);
    dropRow_ = row;
    updateRow(dropRow_);
}

void PanelTable::paintDropRow(QPainter& painter) const {
    if (dropRow_ < 0)
        return;
    const auto& tokens = theme_.tokens();
    const bool isOnAccent =
        dropRow_ == static_cast<int>(panel_.cursor()) && look_ == FocusLook::keyboard;
    const double inset = theme_.px(4);
    const auto rect = QRectF(rowRect(dropRow_)).adjusted(inset + 0.5, 0.5, -inset - 0.5, -0.5);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(isOnAccent ? tokens.onAccent : tokens.accent, 1, Qt::DashLine));
    painter.setBrush(isOnAccent ? QBrush(Qt::NoBrush) : QBrush(tokens.accentSoft));
    painter.drawRoundedRect(rect, 5, 5);
}

void PanelTable::resizeEvent(QResizeEvent* event) {
    const auto cursor = cursorRect();
    const bool cursorWasInView =
        cursor.isValid() && cursor.bottom() >= 0 && cursor.top() < event->oldSize().height();
    geometry_.layOut(*header_, viewport()->width());
    QTableView::resizeEvent(event);
    if (cursorWasInView) // what comes up below must not take it away
        scrollTo(currentIndex(), QAbstractItemView::EnsureVisible);
    wantLinkTargets();
    noteView();
}

void PanelTable::keyPressEvent(QKeyEvent* event) {
    const auto row = static_cast<std::ptrdiff_t>(panel_.cursor());
    const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const auto typed = event->text();
    if (!(modifiers & ~Qt::ShiftModifier) && !typed.isEmpty() && typed.front().isPrint()) {
        search(typed);
        return;
    }
    endSearch();
    const bool hasRows = model()->rowCount() > 0;
    switch (modifiers == Qt::NoModifier && hasRows ? event->key() : 0) {
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
    case Qt::Key_Enter: // the keypad's; the other one is a shortcut
        emit opened();
        break;
    default:
        event->ignore();
        break;
    }
}

void PanelTable::search(const QString& typed) {
    searched_ += typed;
    searchTimer_->start();
    panel_.jumpTo(searched_.toStdString());
    emit searchChanged(searched_);
}

void PanelTable::endSearch() {
    searchTimer_->stop();
    if (searched_.isEmpty())
        return;
    searched_.clear();
    emit searchChanged(searched_);
}

void PanelTable::focusInEvent(QFocusEvent* event) {
    QTableView::focusInEvent(event);
    emit focused();
}

void PanelTable::mousePressEvent(QMouseEvent* event) {
    const int row = rowAt(event->pos().y());
    pressedAt_.reset();
    if (event->button() != Qt::LeftButton || row < 0)
        return;
    if (event->modifiers().testFlag(Qt::ShiftModifier)) {
        panel_.markRange(
            panel_.marks().anchor().value_or(static_cast<std::ptrdiff_t>(panel_.cursor())), row);
        return;
    }
    if (event->modifiers().testFlag(Qt::ControlModifier))
        panel_.toggleMark(static_cast<std::size_t>(row));
    panel_.setCursor(row);
    pressedAt_ = event->pos();
}

void PanelTable::contextMenuEvent(QContextMenuEvent* event) {
    auto corner = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard)
        corner =
            viewport()->mapToGlobal(cursorRect().bottomLeft() + QPoint(geometry_.nameLeft(), 0));
    else if (const int row = rowAt(event->pos().y()); row >= 0)
        panel_.setCursor(row);
    setFocus();
    emit menuRequested(corner);
}

void PanelTable::mouseMoveEvent(QMouseEvent* event) {
    event->accept();
    if (!pressedAt_ || !event->buttons().testFlag(Qt::LeftButton))
        return;
    if ((event->pos() - *pressedAt_).manhattanLength() < QApplication::startDragDistance())
        return;
    pressedAt_.reset();
    dragItems();
}

void PanelTable::dragItems() {
    // The cursor went to the row that was pressed, and stays with its item.
    const auto item = panel_.cursorItem();
    if (!item || item->isParentLink || panel_.archive()) // what is in an archive is no file
        return;
    const bool isMarked = panel_.marks().isMarked(item->name);
    const auto rows = isMarked ? panel_.targets() : std::vector{panel_.cursor()};
    std::vector<FileUrl> items;
    for (const auto row : rows) {
        const auto view = panel_.items().view(row);
        const auto form = view.isFolderLike() ? FileUrl::Form::directory : FileUrl::Form::file;
        items.push_back(panel_.folder().appending(view.name, form));
    }
    emit dragStarted(items, lookOf(*item));
}

void PanelTable::mouseReleaseEvent(QMouseEvent* event) {
    pressedAt_.reset();
    event->accept();
}

void PanelTable::mouseDoubleClickEvent(QMouseEvent* event) {
    // A listing that came between the two clicks may have moved the rows.
    const bool isOnCursor = rowAt(event->pos().y()) == static_cast<int>(panel_.cursor());
    if (event->button() == Qt::LeftButton && event->modifiers() == Qt::NoModifier && isOnCursor)
        emit opened();
}

} // namespace fennik::ui
