#pragma once

#include "app/ui/PanelTable.h"
#include "app/ui/StatusLine.h"
#include "app/ui/UiContext.h"

#include <QWidget>

#include <utility>

class QTimer;

namespace fennik::ui {

class LoadingSkeleton;
class LoadingStripe;
class PanelMessage;
class PanelDrops;
class PathBar;
class RenameField;
class TabStrip;

/// One panel: tabs, path bar, rows, status line, and what stands over the rows while there are
/// none.
class PanelView final : public QWidget {
    Q_OBJECT

public:
    PanelView(const UiContext& context, app::PanelSide side, QWidget* parent);

    app::PanelSide side() const { return panel_.side(); }
    PanelTable& table() { return *table_; }
    PathBar& pathBar() { return *pathBar_; }
    int statusHeight() const { return statusLine_->height(); }
    void setFocusLook(FocusLook look);
    /// Gives the keyboard to the rows, or to the name that is being edited.
    void takeFocus();
    /// Whether there is a strip of tabs, even for a single one.
    void setTabsShown(bool areShown);

signals:
    void menuOpened(bool isOpen);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void takePanel(app::PanelChanges changes);
    void takeTabs();
    void takeRename();
    void takeBusy();
    void holdPicture();
    void showMenu(const QPoint& corner);
    void setLoadingStage(LoadingStage stage);
    void placeOverlays();
    void nameTable();
    void drag(const std::vector<FileUrl>& items, FileLook look);
    QColor rowGround() const;

    UiContext context_;
    app::PanelModel& panel_;
    const Theme& theme_;
    FocusLook look_ = FocusLook::idle;
    TabStrip* tabStrip_;
    PathBar* pathBar_;
    PanelTable* table_;
    StatusLine* statusLine_;
    RenameField* rename_;
    int seenRename_ = 0; ///< token of the request that `rename_` answers
    PanelMessage* message_;
    PanelDrops* drops_;
    LoadingStripe* stripe_;
    LoadingSkeleton* skeleton_;
    QTimer* stageTimer_;
    LoadingStage stage_ = LoadingStage::none;
    std::pair<int, bool>
        shownLoad_; ///< token of the load that `stage_` is about; whether it goes on
};

} // namespace fennik::ui
