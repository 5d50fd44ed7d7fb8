#include "app/ui/OperationsCard.h"

#include "app/ui/IconButton.h"
#include "app/ui/JobTexts.h"
#include "app/ui/RunLabel.h"
#include "app/ui/TextButton.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollArea>

#include <algorithm>
#include <utility>

namespace fennik::ui {

namespace {

/// The bottom of the card's frame, over the rows, whose grounds have no round corners.
class CardBottom final : public QWidget {
public:
    CardBottom(double radius, const Theme& theme, QWidget* parent)
        : QWidget(parent), radius_(radius), theme_(theme) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainterPath card;
        card.addRoundedRect(QRectF(rect()).adjusted(0.5, -2 * radius_, -0.5, -0.5), radius_,
                            radius_);
        QPainterPath around;
        around.addRect(rect());
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(around - card, theme_.tokens().window);
        painter.strokePath(card, theme_.tokens().line);
    }

private:
    const double radius_;
    const Theme& theme_;
};

} // namespace

OperationsCard::OperationsCard(FileUrl home, const Theme& theme, Icons& icons, QWidget* parent)
    : DockedCard(theme, parent),
      words_{.home = std::move(home)},
      icons_(icons),
      title_(new RunLabel(theme, Qt::AlignLeft, this)),
      tidy_(new TextButton(QStringLiteral("Uklidit hotové"), theme, this)),
      hide_(new IconButton(QStringLiteral("chevron-down"), QStringLiteral("Schovat frontu operací"),
                           {}, theme, icons, this)),
      area_(new QScrollArea(this)),
      list_(new QWidget),
      bottom_(new CardBottom(radius, theme, this)) {
    setObjectName(QStringLiteral("operationsCard"));
    setAccessibleName(QStringLiteral("Fronta operací"));
    tidy_->setObjectName(QStringLiteral("tidyOperations"));
    hide_->setObjectName(QStringLiteral("hideOperations"));
    area_->setFrameShape(QFrame::NoFrame);
    area_->setFocusPolicy(Qt::NoFocus);
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area_->setWidget(list_);
    area_->viewport()->setAutoFillBackground(false);
    area_->viewport()->installEventFilter(this);
    list_->setAutoFillBackground(false);

    connect(tidy_, &QAbstractButton::clicked, this, &OperationsCard::tidyRequested);
    connect(hide_, &QAbstractButton::clicked, this, &OperationsCard::hideRequested);
    connect(&theme, &Theme::changed, this, &OperationsCard::takeTheme);
    tidy_->hide();
    takeTheme();
}

void OperationsCard::takeTheme() {
    showSummary();
    update();
}

void OperationsCard::showSummary() {
    const auto& tokens = theme().tokens();
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
    auto* row = new JobRow(job, words_, theme(), icons_, list_);
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

int OperationsCard::rowsHeight() const {
    int height = 0;
    for (const auto* row : rows_)
        height += row->heightForWidth(list_->width());
    return height;
}

int OperationsCard::wantedHeight() const {
    // Without rows it still says what it is.
    const int rows = std::max(rowsHeight() - 1, 0); // the last one's hairline is the card's frame
    const int frame = 2;
    return top() + headerHeight() + rows + frame;
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
    const int side = theme().px(28);
    const int middle = headerMiddle();
    hide_->setGeometry(width() - theme().px(8) - side, middle - side / 2, side, side);
    const auto tidy = tidy_->sizeHint();
    tidy_->setGeometry(hide_->x() - theme().px(9) - tidy.width(), middle - tidy.height() / 2,
                       tidy.width(), tidy.height());
    const int left = theme().px(12);
    title_->setGeometry(left, middle - theme().px(8), std::max(0, tidy_->x() - 2 * left),
                        theme().px(16));
    // The rows stay where they are while the card comes and goes.
    area_->setGeometry(1, bodyTop(), width() - 2, std::max(0, wholeHeight() - bodyTop() - 1));
    bottom_->setGeometry(0, height() - int(radius), width(), int(radius));
}

void OperationsCard::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintCard(painter, theme().tokens().panel, theme().tokens().line);
}

} // namespace fennik::ui
