#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QString>
#include <QWidget>

#include <vector>

namespace fennik::ui {

class IconButton;
class TabButton;

/// The tabs of a panel. It shows what it is given and says what was asked for; it never takes the
/// keyboard.
class TabStrip final : public QWidget {
    Q_OBJECT

public:
    struct Tab {
        QString title = {};
        QString toolTip = {}; ///< plain text

        friend bool operator==(const Tab&, const Tab&) = default;
    };

    TabStrip(const Theme& theme, Icons& icons, QWidget* parent);

    /// `active` is an index into `tabs`.
    void setTabs(const std::vector<Tab>& tabs, int active);
    /// The active panel's strip marks its active tab.
    void setActivePanel(bool isActivePanel);
    /// -1 where there is none.
    int tabAt(const QPoint& point) const;
    /// The tab into whose folder something would be dropped; none with -1.
    void setDropTab(int index);

signals:
    void selected(int index);
    void closeRequested(int index);
    void newTabRequested();
    /// The tab at `from` was dragged to `to`. Comes for each place on the way; `setTabs` is
    /// expected to follow at once.
    void moved(int from, int to);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    TabButton* addButton();
    void showLooks();
    void select(int index);
    void dragTo(int x);
    void layOut();
    std::vector<int> tabWidths(int room) const;

    const Theme& theme_;
    Icons& icons_;
    QWidget* list_; ///< clips the tabs, which it contains
    IconButton* add_;
    std::vector<TabButton*> buttons_; ///< by index; each takes the title of whatever tab is there
    int active_ = -1;
    bool isActivePanel_ = false;
    int dropTab_ = -1;
    int dragged_ = -1; ///< where the tab is that was pressed last
    int scrolled_ = 0;
    int turned_ = 0; ///< of the wheel, not yet worth a tab
};

} // namespace fennik::ui
