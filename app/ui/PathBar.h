#pragma once

#include "app/model/AppModel.h"
#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QWidget>

#include <vector>

class QAbstractButton;

namespace fennik::ui {

class Crumb;

/// Back, forward and up, and the way to the folder as crumbs, each of which opens its folder.
class PathBar final : public QWidget {
    Q_OBJECT

public:
    PathBar(app::AppModel& app, app::PanelModel& panel, const Theme& theme, Icons& icons,
            QWidget* parent);

    void setActive(bool isActive);

signals:
    void menuOpened(bool isOpen);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void takePanel();
    void layOutCrumbs();
    void showHiddenCrumbs();
    QRect field() const;

    app::AppModel& app_;
    app::PanelModel& panel_;
    const Theme& theme_;
    Icons& icons_;
    QAbstractButton* back_;
    QAbstractButton* forward_;
    QAbstractButton* up_;
    Crumb* more_; ///< stands for the crumbs that have no room
    std::vector<Crumb*> crumbs_;
    std::vector<QPoint> separators_;
    std::string shownPath_;
    FileUrl shownVolume_;
    bool startsAtHome_ = false;
    bool isActive_ = false;
};

} // namespace fennik::ui
