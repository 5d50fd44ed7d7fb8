#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QWidget>

#include <cstddef>
#include <string>
#include <vector>

class QLineEdit;

namespace fennik::ui {

class ElidedLabel;

/// The command line of the window: the folder that commands run in, and the field for them, with
/// those of before under the arrow keys.
class CommandLineBar final : public QWidget {
    Q_OBJECT

public:
    CommandLineBar(const Theme& theme, Icons& icons, QWidget* parent);

    /// As it is shown.
    void setFolder(const QString& folder);
    /// Oldest first, in UTF-8.
    void setHistory(std::vector<std::string> history);
    /// The key that leads here; empty for none.
    void setLegend(const QString& key);
    QString text() const;
    void setText(const QString& text);
    /// Shows itself, if need be.
    void takeFocus();
    /// Where there is little room, it is only shown while the keyboard or a text is in it.
    void setAlwaysShown(bool isAlwaysShown);

signals:
    /// The user has changed the text, or taken one from the history.
    void edited(const QString& text);
    void runRequested();
    /// The keyboard is to go back to the panel.
    void left();
    /// The keyboard is to go on to the next place of the window, or to the one before.
    void forwardRequested();
    void backRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void takeTheme();
    void showIfWanted();
    void layOut();
    bool press(int key);
    void recall(int step);
    QString hint() const;
    QRect frame() const;
    int hintWidth() const;

    const Theme& theme_;
    Icons& icons_;
    ElidedLabel* folder_;
    QLineEdit* field_;
    QString legend_;
    std::vector<std::string> history_;
    std::size_t place_ = 0; ///< of what stands in the field; behind all others: what was typed
    QString typed_;         ///< while one of the history stands in the field
    bool showsHint_ = false;
    bool isAlwaysShown_ = true;
};

} // namespace fennik::ui
