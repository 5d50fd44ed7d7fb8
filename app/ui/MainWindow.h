#pragma once

#include "app/model/AppModel.h"
#include "app/ui/Icons.h"
#include "app/ui/PanelKeys.h"
#include "app/ui/Theme.h"

#include <QWidget>

#include <array>

class QSplitter;

namespace fennik::ui {

class PanelView;

/// The window: the two panels side by side.
class MainWindow final : public QWidget {
    Q_OBJECT

public:
    MainWindow(app::AppModel& app, const Theme& theme, Icons& icons);

    PanelView& view(app::PanelSide side) { return *views_[static_cast<std::size_t>(side)]; }

signals:
    /// The first picture has been painted.
    void firstPainted();

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void takeActiveSide();
    void showFocus();
    void setTitle();

    app::AppModel& app_;
    const Theme& theme_;
    PanelKeys keys_;
    QSplitter* splitter_;
    std::array<PanelView*, 2> views_{};
    bool menuIsOpen_ = false;
    bool wasPainted_ = false;
};

} // namespace fennik::ui
