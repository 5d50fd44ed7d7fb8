#pragma once

#include "app/ui/Theme.h"

#include <QPlainTextEdit>

#include <cstdint>

namespace fennik::app {
class CommandOutput;
}

namespace fennik::ui {

/// The text of a command's output, which can be selected, but not edited. It follows the end,
/// unless the user has scrolled up.
class OutputView final : public QPlainTextEdit {
    Q_OBJECT

public:
    OutputView(const Theme& theme, QWidget* parent);

    /// Begins anew with another command.
    void begin(const QString& command);
    /// What of the same output is not shown yet. Costs as much as has changed since.
    void showOutput(const app::CommandOutput& output);

signals:
    /// Esc was pressed.
    void escaped();

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void takeTheme();
    void showCommand();
    void followEnd();

    const Theme& theme_;
    QString command_;
    bool follows_ = true; ///< the end is in view
    bool isChanging_ = false;
    int headBlocks_ = 1;         ///< before the first line: the command, what is left out
    std::int64_t omitted_ = 0;   ///< lines that were left out when it was shown
    std::int64_t lineCount_ = 0; ///< that are shown, the last one as it was then
};

} // namespace fennik::ui
