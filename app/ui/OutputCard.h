#pragma once

#include "app/ui/DockedCard.h"
#include "app/ui/Icons.h"
#include "core/base/Uuid.h"

namespace fennik::app {
struct CommandRun;
}

namespace fennik::ui {

class ElidedLabel;
class OutputEdge;
class OutputView;
class RunState;
class TextButton;

/// The card that shows the last command and what it writes. Its top edge is dragged, and its height
/// stays until the program ends.
class OutputCard final : public DockedCard {
    Q_OBJECT

public:
    OutputCard(const Theme& theme, Icons& icons, QWidget* parent);

    /// Comes with a run, and shows how far it is. `folder` is the path it ran in, as it is shown.
    void showRun(const app::CommandRun& run, const QString& folder);
    /// What the same run has written since.
    void showOutput(const app::CommandRun& run);
    /// Gives the keyboard to the text.
    void takeFocus();

signals:
    void stopRequested();
    void copyRequested();
    void closeRequested();
    /// The keyboard is to go on to the next place of the window.
    void passed();

protected:
    int wantedHeight() const override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void takeTheme();
    void layOut();

    Icons& icons_;
    Uuid shownRun_;
    ElidedLabel* command_;
    ElidedLabel* folder_;
    RunState* state_;
    TextButton* stop_;
    TextButton* copy_;
    TextButton* close_;
    OutputView* text_;
    OutputEdge* edge_;
    int height_; ///< without the gap
};

} // namespace fennik::ui
