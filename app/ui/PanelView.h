#pragma once

#include "app/model/AppModel.h"
#include "app/ui/Icons.h"
#include "app/ui/PanelTable.h"
#include "app/ui/StatusLine.h"
#include "app/ui/Theme.h"

#include <QWidget>

#include <utility>

class QTimer;

namespace fennik::ui {

class LoadingSkeleton;
class LoadingStripe;
class PanelMessage;
class PathBar;

/// One panel: path bar, rows, status line, and what stands over the rows while there are none.
class PanelView final : public QWidget {
    Q_OBJECT

public:
    PanelView(app::AppModel& app, app::PanelSide side, const Theme& theme, Icons& icons,
              QWidget* parent);

    app::PanelSide side() const { return panel_.side(); }
    PanelTable& table() { return *table_; }
    void setFocusLook(FocusLook look);

signals:
    void menuOpened(bool isOpen);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void takePanel(app::PanelChanges changes);
    void setLoadingStage(LoadingStage stage);
    void placeOverlays();
    void nameTable();
    QColor rowGround() const;

    app::PanelModel& panel_;
    const Theme& theme_;
    FocusLook look_ = FocusLook::idle;
    PathBar* pathBar_;
    PanelTable* table_;
    StatusLine* statusLine_;
    PanelMessage* message_;
    LoadingStripe* stripe_;
    LoadingSkeleton* skeleton_;
    QTimer* stageTimer_;
    LoadingStage stage_ = LoadingStage::none;
    std::pair<int, bool>
        shownLoad_; ///< token of the load that `stage_` is about; whether it goes on
};

} // namespace fennik::ui
