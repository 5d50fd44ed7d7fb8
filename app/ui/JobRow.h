#pragma once

#include "app/ui/Icons.h"
#include "app/ui/JobTexts.h"
#include "app/ui/Theme.h"
#include "core/base/FileUrl.h"
#include "core/operations/JobSnapshot.h"

#include <QTimer>
#include <QWidget>

namespace fennik::ui {

class IconButton;
class JobErrors;
class ProgressBar;
class UnfoldButton;

/// One job in the card of operations: what it is, how far it has come, and buttons to steer it.
/// Screen readers find a progress bar.
class JobRow final : public QWidget {
    Q_OBJECT

public:
    /// What the texts of all rows are made with.
    struct Words {
        FileUrl home = {};
        QString undo = {}; ///< how to take back what a cancelled job has done
    };

    JobRow(const JobSnapshot& job, const Words& words, const Theme& theme, Icons& icons,
           QWidget* parent);

    const JobSnapshot& job() const { return job_; }
    /// Another snapshot of the same job. Figures that only change are repainted four times a second
    /// at the most.
    void setJob(const JobSnapshot& job);
    bool showErrors() const { return showErrors_; }
    /// A job without errors has nothing to show.
    void setShowErrors(bool shows);
    QString spoken() const;

    QSize sizeHint() const override;
    int heightForWidth(int width) const override;
    bool hasHeightForWidth() const override { return true; }

signals:
    void pauseRequested();
    void resumeRequested();
    void cancelRequested();
    /// The row of a job that has ended is to go.
    void removeRequested();
    /// The keyboard is to go this many rows further.
    void moveRequested(int rows);
    /// The keyboard is to leave the card.
    void left();
    void heightChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    struct Columns;
    /// What is painted.
    struct Shown {
        JobSnapshot::State state = JobSnapshot::State::waiting;
        QString title = {};
        QString target = {};
        QString name = {}; ///< of the item being worked on
        QString status = {};
        QString note = {};
        JobTexts::Figures figures = {};
        friend bool operator==(const Shown&, const Shown&) = default;
    };
    Columns columns() const;
    Shown shownJob() const;
    bool canPause() const;
    bool canResume() const;
    void takeJob();
    void takeFigures();
    void showProgress();
    int rowBottom() const;
    void layOut();
    void cancelOrRemove();
    QColor statusColor() const;
    void paintTile(QPainter& painter) const;
    void paintNames(QPainter& painter) const;
    void paintDetail(QPainter& painter) const;

    const Words& words_;
    const Theme& theme_;
    Icons& icons_;
    JobSnapshot job_;
    Shown shown_; ///< of `job_`, or of how it stood a moment before
    bool showErrors_ = false;
    ProgressBar* bar_;
    UnfoldButton* unfold_;
    IconButton* pause_;
    IconButton* resume_;
    IconButton* cancel_;
    IconButton* remove_;
    JobErrors* errors_ = nullptr; ///< while they are shown
    QTimer figures_;              ///< runs while those painted last are too new for others
    int spokenPercent_ = -1;
};

} // namespace fennik::ui
