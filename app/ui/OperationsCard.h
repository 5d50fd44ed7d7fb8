#pragma once

#include "app/ui/Icons.h"
#include "app/ui/JobRow.h"
#include "app/ui/Motion.h"
#include "app/ui/Theme.h"

#include <QWidget>

#include <vector>

class QScrollArea;

namespace fennik::ui {

class IconButton;
class RunLabel;
class TextButton;

/// The card that lists the jobs of the queue, docked in the window. It is as high as its rows, up
/// to a limit, and then scrolls. Hidden at first.
class OperationsCard final : public QWidget {
    Q_OBJECT

public:
    OperationsCard(FileUrl home, const Theme& theme, Icons& icons, QWidget* parent);

    /// In the order of the queue.
    void setJobs(const std::vector<JobSnapshot>& jobs);
    /// How to take back what a cancelled job has done.
    void setUndoWords(const QString& words);
    /// Comes or goes, in a moment.
    void setShown(bool isShown);
    /// In pixels, with the gap above the card.
    void setHeightLimit(int limit);
    /// Gives the keyboard to the first row that is at work, if there is any row.
    void takeFocus();

    std::vector<JobRow*> rows() const { return rows_; }

signals:
    void pauseRequested(const fennik::Uuid& job);
    void resumeRequested(const fennik::Uuid& job);
    void cancelRequested(const fennik::Uuid& job);
    /// The row of a job that has ended is to go.
    void removeRequested(const fennik::Uuid& job);
    /// The rows of all jobs that have ended are to go.
    void tidyRequested();
    void hideRequested();
    /// The keyboard is to go back to the panel.
    void left();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    JobRow* addRow(const JobSnapshot& job);
    void dropRow(JobRow* row, std::size_t place);
    void moveFocus(JobRow* from, int rows);
    void takeTheme();
    void showSummary();
    void takeHeight();
    void layOutRows();
    int top() const;
    int headerHeight() const;
    int rowsHeight() const;
    int wholeHeight() const;

    JobRow::Words words_;
    const Theme& theme_;
    Icons& icons_;
    std::vector<JobRow*> rows_;
    QString summary_;
    RunLabel* title_;
    TextButton* tidy_;
    IconButton* hide_;
    QScrollArea* area_;
    QWidget* list_;
    QWidget* bottom_;
    int heightLimit_ = QWIDGETSIZE_MAX;
    Motion motion_; ///< of the share of the height
};

} // namespace fennik::ui
