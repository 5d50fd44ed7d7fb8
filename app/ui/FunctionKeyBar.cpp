#include "app/ui/FunctionKeyBar.h"

#include "app/ui/FunctionKeyCell.h"
#include "app/ui/QueuePill.h"
#include "app/ui/Text.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <chrono>
#include <utility>

namespace fennik::ui {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t mainCells = 7;
constexpr double leastWithIcons = 1150;
constexpr double leastWithAllCells = 980;
constexpr double leastForTitle = 64; ///< of one cell

Qt::KeyboardModifiers modifierOf(int key) {
    switch (key) {
    case Qt::Key_Shift:
        return Qt::ShiftModifier;
    case Qt::Key_Control:
        return Qt::ControlModifier;
    case Qt::Key_Alt:
        return Qt::AltModifier;
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
        return Qt::MetaModifier;
    default:
        return Qt::NoModifier;
    }
}

} // namespace

FunctionKeyBar::FunctionKeyBar(CellsOf cellsOf, const Theme& theme, Icons& icons, QWidget* parent)
    : QWidget(parent),
      cellsOf_(std::move(cellsOf)),
      theme_(theme),
      icons_(icons),
      queue_(new QueuePill(theme, this)) {
    setObjectName(QStringLiteral("functionKeyBar"));
    setFixedHeight(theme.px(34));
    holding_.setSingleShot(true);
    holding_.setInterval(150ms);
    connect(&holding_, &QTimer::timeout, this, &FunctionKeyBar::showLayer);
    connect(queue_, &QAbstractButton::clicked, this, &FunctionKeyBar::queueClicked);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
    qApp->installEventFilter(this);
    refresh();
}

FunctionKeyBar::~FunctionKeyBar() {
    qApp->removeEventFilter(this);
}

void FunctionKeyBar::refresh() {
    const auto cells = cellsOf_(layer_);
    while (cells_.size() > cells.size()) {
        cells_.back()->hide();
        cells_.back()->deleteLater(); // it may be the one that was clicked
        cells_.pop_back();
    }
    while (cells_.size() < cells.size()) {
        auto* cell = new FunctionKeyCell(theme_, icons_, this);
        const int index = int(cells_.size());
        connect(cell, &QAbstractButton::clicked, this,
                [this, index] { emit activated(index, layer_); });
        cells_.push_back(cell);
    }
    for (std::size_t i = 0; i < cells.size(); ++i)
        cells_[i]->setCell(cells[i]);
    layOut();
}

void FunctionKeyBar::setQueue(const std::optional<JobTexts::Brief>& brief, const QString& toolTip) {
    queue_->setVisible(brief.has_value());
    if (brief) {
        queue_->setBrief(*brief);
        queue_->setToolTip(toolTipText(toolTip));
    }
    const int room = roomOfQueue();
    if (std::exchange(queueRoom_, room) != room)
        layOut();
}

int FunctionKeyBar::roomOfQueue() const {
    return queue_->isHidden() ? 0 : queue_->sizeHint().width() + theme_.px(16);
}

void FunctionKeyBar::layOut() {
    const int cellsWidth = width() - queueRoom_;
    const auto pill = queue_->sizeHint();
    queue_->setGeometry(width() - theme_.px(8) - pill.width(), (height() - pill.height()) / 2,
                        pill.width(), pill.height());
    const bool showsAll = cellsWidth >= theme_.px(leastWithAllCells);
    const auto shown = showsAll ? cells_.size() : std::min(cells_.size(), mainCells);
    const bool hasTitles = cellsWidth >= theme_.px(leastForTitle) * int(shown);
    const auto room = !hasTitles                                ? FunctionKeyCell::Room::iconOnly
                      : cellsWidth >= theme_.px(leastWithIcons) ? FunctionKeyCell::Room::full
                                                                : FunctionKeyCell::Room::titleOnly;
    const auto leftOf = [&](std::size_t index) { return cellsWidth * int(index) / int(shown); };
    for (std::size_t i = 0; i < cells_.size(); ++i) {
        cells_[i]->setRoom(room);
        cells_[i]->setVisible(i < shown);
        if (i < shown)
            cells_[i]->setGeometry(leftOf(i), 0, leftOf(i + 1) - leftOf(i), height());
    }
    hairline_ = shown > mainCells ? leftOf(mainCells) : -1;
    update();
}

void FunctionKeyBar::hold(Qt::KeyboardModifiers held) {
    if (held == held_)
        return;
    held_ = held;
    // A short press belongs to a combination; letting go shows the plain keys at once.
    if (held == Qt::NoModifier)
        showLayer();
    else
        holding_.start();
}

void FunctionKeyBar::showLayer() {
    holding_.stop();
    if (layer_ == held_)
        return;
    layer_ = held_;
    refresh();
}

bool FunctionKeyBar::eventFilter(QObject* watched, QEvent* event) {
    const auto type = event->type();
    if (type == QEvent::KeyPress || type == QEvent::KeyRelease) {
        const auto* key = static_cast<QKeyEvent*>(event);
        constexpr auto all =
            Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
        // Whether the modifier's own press is in there already, systems do not agree.
        const auto own = modifierOf(key->key());
        const auto others = key->modifiers() & all & ~own;
        hold(type == QEvent::KeyPress ? others | own : others);
    } else if (type == QEvent::WindowDeactivate && watched == window()) {
        hold(Qt::NoModifier); // nobody tells when they are let go elsewhere
    }
    return QWidget::eventFilter(watched, event);
}

void FunctionKeyBar::resizeEvent(QResizeEvent*) {
    layOut();
}

void FunctionKeyBar::paintEvent(QPaintEvent*) {
    if (hairline_ < 0)
        return;
    const int inset = theme_.px(9);
    QPainter(this).fillRect(hairline_, inset, 1, height() - 2 * inset, theme_.tokens().line);
}

} // namespace fennik::ui
