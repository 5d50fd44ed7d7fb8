#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QWidget>

#include <array>

namespace fennik::ui {

/// One tab of a `TabStrip`.
class TabButton final : public QWidget {
    Q_OBJECT

public:
    TabButton(const Theme& theme, Icons& icons, QWidget* parent);

    struct Look {
        bool isActive = false;      ///< the tab that its panel shows
        bool isActivePanel = false; ///< the keyboard is in that panel
        bool isClosable = false;
        bool isDropTarget = false; ///< something would be dropped into its folder

        friend bool operator==(const Look&, const Look&) = default;
    };

    const QString& title() const { return title_; }
    void setTitle(const QString& title, const QString& toolTip);
    const Look& look() const { return look_; }
    void setLook(const Look& look);
    /// Where a click closes the tab; empty while there is no "×".
    QRect closeArea() const;

    /// Wide enough for the whole title.
    QSize sizeHint() const override;

signals:
    void pressed();
    void closeRequested();
    /// The pressed mouse is at `x` of the parent.
    void dragged(int x);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void paintGround(QPainter& painter) const;

    const Theme& theme_;
    Icons& icons_;
    QString title_;
    QString shownToolTip_;
    mutable std::array<double, 2> textWidth_{-1, -1}; ///< plain and active; −1: not yet measured
    Look look_;
    QPoint pressedAt_;
    bool isOverClose_ = false;
    enum class Press { none, tab, drag, close, middle } press_ = Press::none;
};

} // namespace fennik::ui
