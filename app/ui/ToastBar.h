#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Motion.h"
#include "app/ui/Theme.h"

#include <QWidget>

namespace fennik::ui {

class KeyButton;
class Shadow;

/// A message of one line that says what happened, over the lower end of the window. It comes and
/// goes as it is told and never takes the keyboard; screen readers hear it at once.
class ToastBar final : public QWidget {
    Q_OBJECT

public:
    enum class Kind { ok, error, info };
    struct Button {
        QString title = {};
        QString key = {};  ///< its legend, may be empty
        QString icon = {}; ///< for `Icons::line`, may be empty
    };
    struct Toast {
        Kind kind = Kind::info;
        QString text = {};  ///< plain; of several lines only the first is shown
        Button button = {}; ///< none without a title
    };

    /// Hidden until there is a toast.
    ToastBar(const Theme& theme, Icons& icons, QWidget* parent);

    /// Takes the size that the toast needs, in place of the one on show. The caller moves it.
    void showToast(const Toast& toast);
    void dismiss();

    QSize sizeHint() const override;

signals:
    void buttonClicked();
    /// All lines of a toast of several are asked for.
    void allLinesRequested(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void setOpacity(double opacity);
    QString firstLine() const;
    QString moreLines() const;

    const Theme& theme_;
    Icons& icons_;
    Toast toast_;
    KeyButton* all_;
    KeyButton* button_;
    Shadow* shadow_;
    Motion motion_; ///< of the opacity
};

} // namespace fennik::ui
