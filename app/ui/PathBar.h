#pragma once

#include "app/ui/UiContext.h"

#include <QWidget>

#include <optional>
#include <utility>
#include <vector>

class QAbstractButton;

namespace fennik::ui {

class Crumb;
class IconButton;
class PathField;

/// Back, forward and up, the way to the folder as crumbs, each of which opens its folder, and a
/// field in their place while a path is being typed.
class PathBar final : public QWidget {
    Q_OBJECT

public:
    PathBar(const UiContext& context, app::PanelModel& panel, QWidget* parent);

    void setActive(bool isActive);
    /// Lets the user type a path.
    void openField();
    /// The crumb at a point, counted from the start, and its folder.
    std::optional<std::pair<int, FileUrl>> crumbAt(const QPoint& point) const;
    /// The crumb into whose folder something would be dropped; none with -1.
    void setDropCrumb(int crumb);

signals:
    void menuOpened(bool isOpen);
    /// The field is put away, and the keyboard belongs to the panel again.
    void fieldClosed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void takePanel();
    void takeKeys();
    void takePlaces();
    void takeTyped(const QString& text);
    void goTo(const QString& text);
    void followTyped();
    void closeField();
    void layOutCrumbs();
    void showHiddenCrumbs();
    QRect field() const;

    UiContext context_;
    app::AppModel& app_;
    app::PanelModel& panel_;
    const Theme& theme_;
    Icons& icons_;
    IconButton* back_;
    IconButton* forward_;
    IconButton* up_;
    IconButton* star_;
    IconButton* terminal_;
    PathField* pathField_;
    int typedLoad_ = -1; ///< the load of the path that was typed
    Crumb* more_;        ///< stands for the crumbs that have no room
    std::vector<Crumb*> crumbs_;
    std::vector<FileUrl> folders_; ///< of the crumbs
    std::vector<QPoint> separators_;
    std::string shownPath_;
    FileUrl shownVolume_;
    bool startsAtHome_ = false;
    bool isActive_ = false;
};

} // namespace fennik::ui
