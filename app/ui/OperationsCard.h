#pragma once

#include "app/ui/DockedCard.h"
#include "app/ui/Icons.h"
#include "app/ui/JobRow.h"

#include <vector>

class QScrollArea;

namespace fennik::ui {

class IconButton;
class RunLabel;
class TextButton;

/// The card that lists the jobs of the queue. It is as high as its rows, up to the limit, and then
/// scrolls.
class OperationsCard final : public DockedCard {
    Q_OBJECT

public:
    OperationsCard(FileUrl home, const Theme& theme, Icons& icons, QWidget* parent);

    /// In the order of the queue.
    void setJobs(const std::vector<JobSnapshot>& jobs);
    /// How to take back what a cancelled job has done.
    void setUndoWords(const QString& words);
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

protected:
    int wantedHeight() const override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    JobRow* addRow(const JobSnapshot& job);
    void dropRow(JobRow* row, std::size_t place);
    void moveFocus(JobRow* from, int rows);
    void takeTheme();
    void showSummary();
    void layOutRows();
    int rowsHeight() const;

    JobRow::Words words_;
    Icons& icons_;
    std::vector<JobRow*> rows_;
    QString summary_;
    RunLabel* title_;
    TextButton* tidy_;
    IconButton* hide_;
    QScrollArea* area_;
    QWidget* list_;
    QWidget* bottom_;
};

} // namespace fennik::ui
