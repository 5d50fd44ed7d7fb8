#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Motion.h"
#include "app/ui/Theme.h"
#include "core/base/Uuid.h"

#include <QWidget>

namespace fennik::app {
struct CommandRun;
}

namespace fennik::ui {

class ElidedLabel;
class OutputEdge;
class OutputView;
class RunState;
class TextButton;

/// The card that shows the last command and what it writes, docked in the window. Its top edge is
/// dragged, and its height stays until the program ends. Hidden at first.
class OutputCard final : public QWidget {
    Q_OBJECT

public:
    OutputCard(const Theme& theme, Icons& icons, QWidget* parent);

    /// Comes with a run, and shows how far it is. `folder` is the path it ran in, as it is shown.
    void showRun(const app::CommandRun& run, const QString& folder);
    /// What the same run has written since.
    void showOutput(const app::CommandRun& run);
    /// Goes, in a moment.
    void dismiss();
    bool isOnShow() const { return isOnShow_; }
    /// In pixels, with the gap above the card.
    void setHeightLimit(int limit);
    /// Gives the keyboard to the text.
    void takeFocus();

signals:
    void stopRequested();
    void copyRequested();
    void closeRequested();
    /// The keyboard is to go on to the next place of the window.
    void passed();
    /// The keyboard is to go back to the panel.
    void left();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void takeTheme();
    void layOut();
    void takeHeight();
    int top() const;
    int bodyTop() const;
    int wholeHeight() const;

    const Theme& theme_;
    Icons& icons_;
    Uuid shownRun_;
    bool isOnShow_ = false;
    ElidedLabel* command_;
    ElidedLabel* folder_;
    RunState* state_;
    TextButton* stop_;
    TextButton* copy_;
    TextButton* close_;
    OutputView* text_;
    OutputEdge* edge_;
    int wantedHeight_;
    int heightLimit_ = QWIDGETSIZE_MAX;
    Motion motion_; ///< of the share of the height
};

} // namespace fennik::ui
