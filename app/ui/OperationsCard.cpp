#include "app/ui/OperationsCard.h"

#include "app/ui/AccessibleRole.h"
#include "app/ui/IconButton.h"
#include "app/ui/JobTexts.h"
#include "app/ui/RunLabel.h"
#include "app/ui/TextButton.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>
#include <chrono>
#include <utility>

namespace fennik::ui {

namespace {

using namespace std::chrono_literals;

constexpr double gapAbove = 8;
constexpr double radius = 9;
constexpr double header = 32;

/// The bottom of the card's frame, over the rows, whose grounds have no round corners.
class CardBottom final : public QWidget {
public:
    CardBottom(const Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainterPath card;
        card.addRoundedRect(QRectF(rect()).adjusted(0.5, -2 * radius, -0.5, -0.5), radius, radius);
        QPainterPath around;
        around.addRect(rect());
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(around - card, theme_.tokens().window);
        painter.strokePath(card, theme_.tokens().line);
    }

private:
    const Theme& theme_;
};

} // namespace

OperationsCard::OperationsCard(FileUrl home, const Theme& theme, Icons& icons, QWidget* parent)
    : QWidget(parent),
      words_{.home = std::move(home)},
      theme_(theme),
      icons_(icons),
      title_(new RunLabel(theme, Qt::AlignLeft, this)),
      tidy_(new TextButton(QStringLiteral("Uklidit hotové"), theme, this)),
      hide_(new IconButton(QStringLiteral("chevron-down"), QStringLiteral("Schovat frontu operací"),
                           {}, theme, icons, this)),
      area_(new QScrollArea(this)),
      list_(new QWidget),
      bottom_(new CardBottom(theme, this)),
      motion_(120ms, 0, this) {
    setObjectName(QStringLiteral("operationsCard"));
    setAccessibleRole(*this, QAccessible::Grouping);
    setAccessibleName(QStringLiteral("Fronta operací"));
    tidy_->setObjectName(QStringLiteral("tidyOperations"));
    hide_->setObjectName(QStringLiteral("hideOperations"));
    setFixedHeight(0);
    hide();
    area_->setFrameShape(QFrame::NoFrame);
    area_->setFocusPolicy(Qt::NoFocus);
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area_->setWidget(list_);
    area_->viewport()->setAutoFillBackground(false);
    area_->viewport()->installEventFilter(this);
    list_->setAutoFillBackground(false);

    connect(tidy_, &QAbstractButton::clicked, this, &OperationsCard::tidyRequested);
    connect(hide_, &QAbstractButton::clicked, this, &OperationsCard::hideRequested);
    connect(&motion_, &Motion::moved, this, &OperationsCard::takeHeight);
    connect(&motion_, &Motion::arrived, this, [this] { setVisible(motion_.value() > 0); });
    connect(&theme_, &Theme::changed, this, &OperationsCard::takeTheme);
    tidy_->hide();
    takeTheme();
}

void OperationsCard::takeTheme() {
    area_->verticalScrollBar()->setStyleSheet(theme_.styleSheet());
    showSummary();
    update();
}

void OperationsCard::showSummary() {
    const auto& tokens = theme_.tokens();
    title_->setRuns(
        {{QStringLiteral("Fronta operací"), tokens.text, QFont::DemiBold},
         {summary_.isEmpty() ? QString() : QStringLiteral("  · ") + summary_, tokens.text2}});
}

void OperationsCard::setUndoWords(const QString& words) {
    words_.undo = words;
    for (auto* row : rows_)
        row->setJob(row->job());
}

void OperationsCard::setJobs(const std::vector<JobSnapshot>& jobs) {
    auto before = std::exchange(rows_, {});
    for (const auto& job : jobs) {
        const auto found = std::ranges::find_if(
            before, [&](const JobRow* row) { return row != nullptr && row->job().id == job.id; });
        if (found == before.end()) {
            rows_.push_back(addRow(job));
            continue;
        }
        (*found)->setJob(job);
        rows_.push_back(std::exchange(*found, nullptr));
    }
    for (std::size_t place = 0; place < before.size(); ++place) {
        if (before[place] != nullptr)
            dropRow(before[place], place);
    }
    layOutRows();

    const auto summary = JobTexts::summary(jobs);
    if (std::exchange(summary_, summary) != summary)
        showSummary();
    tidy_->setVisible(std::ranges::any_of(jobs, &JobSnapshot::hasEnded));
    takeHeight();
}

JobRow* OperationsCard::addRow(const JobSnapshot& job) {
    auto* row = new JobRow(job, words_, theme_, icons_, list_);
    const auto id = job.id;
    connect(row, &JobRow::pauseRequested, this, [this, id] { emit pauseRequested(id); });
    connect(row, &JobRow::resumeRequested, this, [this, id] { emit resumeRequested(id); });
    connect(row, &JobRow::cancelRequested, this, [this, id] { emit cancelRequested(id); });
    connect(row, &JobRow::removeRequested, this, [this, id] { emit removeRequested(id); });
    connect(row, &JobRow::moveRequested, this, [this, row](int rows) { moveFocus(row, rows); });
    connect(row, &JobRow::left, this, &OperationsCard::left);
    connect(row, &JobRow::heightChanged, this, [this, row] {
        layOutRows();
        takeHeight();
        area_->ensureWidgetVisible(row, 0, 0);
    });
    row->show();
    return row;
}

void OperationsCard::dropRow(JobRow* row, std::size_t place) {
    const auto* focus = QApplication::focusWidget();
    if (focus != nullptr && (focus == row || row->isAncestorOf(focus))) {
        if (rows_.empty())
            emit left();
        else
            rows_[std::min(place, rows_.size() - 1)]->setFocus();
    }
    row->hide();
    row->deleteLater(); // it may be the one that asked for this
}

void OperationsCard::moveFocus(JobRow* from, int rows) {
    const auto place = std::ranges::find(rows_, from) - rows_.begin() + rows;
    if (place < 0 || place >= std::ssize(rows_))
        return;
    auto* row = rows_[std::size_t(place)];
    row->setFocus(Qt::TabFocusReason);
    area_->ensureWidgetVisible(row, 0, 0);
}

void OperationsCard::takeFocus() {
    const auto atWork =
        std::ranges::find_if(rows_, [](const JobRow* row) { return !row->job().hasEnded(); });
    if (atWork != rows_.end())
        (*atWork)->setFocus(Qt::TabFocusReason);
    else if (!rows_.empty())
        rows_.front()->setFocus(Qt::TabFocusReason);
}

void OperationsCard::setShown(bool isShown) {
    if (isShown) {
        show();
    } else if (const auto* focus = QApplication::focusWidget();
               focus != nullptr && isAncestorOf(focus)) {
        emit left();
    }
    motion_.moveTo(isShown ? 1 : 0);
}

void OperationsCard::setHeightLimit(int limit) {
    heightLimit_ = limit;
    takeHeight();
}

int OperationsCard::top() const {
    return theme_.px(gapAbove);
}

int OperationsCard::headerHeight() const {
    return theme_.px(header);
}

int OperationsCard::rowsHeight() const {
    int height = 0;
    for (const auto* row : rows_)
        height += row->heightForWidth(list_->width());
    return height;
}

int OperationsCard::wholeHeight() const {
    // Without rows it still says what it is.
    const int rows = std::max(rowsHeight() - 1, 0); // the last one's hairline is the card's frame
    const int frame = 2;
    return std::min(top() + headerHeight() + rows + frame, heightLimit_);
}

void OperationsCard::takeHeight() {
    const int height = qRound(wholeHeight() * motion_.value());
    if (height != this->height())
        setFixedHeight(height);
}

void OperationsCard::layOutRows() {
    const int width = area_->viewport()->width();
    int bottom = 0;
    for (auto* row : rows_) {
        row->resize(width, row->height()); // where the lines of its errors break
        const int height = row->heightForWidth(width);
        row->setGeometry(0, bottom, width, height);
        bottom += height;
    }
    list_->resize(width, std::max(bottom - 1, 0));
}

bool OperationsCard::eventFilter(QObject* watched, QEvent* event) {
    if (watched == area_->viewport() && event->type() == QEvent::Resize)
        layOutRows();
    return QWidget::eventFilter(watched, event);
}

void OperationsCard::resizeEvent(QResizeEvent*) {
    const int side = theme_.px(28);
    const int middle = top() + 1 + headerHeight() / 2;
    hide_->setGeometry(width() - theme_.px(8) - side, middle - side / 2, side, side);
    const auto tidy = tidy_->sizeHint();
    tidy_->setGeometry(hide_->x() - theme_.px(9) - tidy.width(), middle - tidy.height() / 2,
                       tidy.width(), tidy.height());
    const int left = theme_.px(12);
    title_->setGeometry(left, middle - theme_.px(8), std::max(0, tidy_->x() - 2 * left),
                        theme_.px(16));
    // The rows stay where they are while the card comes and goes.
    const int rowsTop = top() + 1 + headerHeight();
    area_->setGeometry(1, rowsTop, width() - 2, std::max(0, wholeHeight() - rowsTop - 1));
    bottom_->setGeometry(0, height() - int(radius), width(), int(radius));
}

void OperationsCard::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto frame = QRectF(rect()).adjusted(0, top(), 0, 0);
    QPainterPath card;
    card.addRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.fillPath(card, tokens.panel);
    painter.setClipRect(QRectF(0, 0, width(), area_->y()));
    painter.fillPath(card, tokens.chrome);
    painter.fillRect(QRectF(0, area_->y() - 1, width(), 1), tokens.line);
    painter.setClipping(false);
    painter.strokePath(card, tokens.line);
}

} // namespace fennik::ui
