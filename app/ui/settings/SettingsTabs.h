#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QWidget>

#include <vector>

namespace fennik::ui {

/// The side bar of the settings: one page is chosen. It is a single stop of the Tab key, and the
/// arrows choose within it.
class SettingsTabs final : public QWidget {
    Q_OBJECT

public:
    struct Page {
        QString title = {};
        QString icon = {}; ///< for `Icons::line`
        QString name = {}; ///< of the button, for tests
    };

    /// The first page is chosen.
    SettingsTabs(const std::vector<Page>& pages, const Theme& theme, Icons& icons, QWidget* parent);

    void choose(int index);
    /// Gives the keyboard to the page that is chosen.
    void takeFocus();
    /// Tabs without text show their icons alone.
    void setTextShown(bool isShown);

signals:
    void chosenChanged(int index);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    class Tab;

    const Theme& theme_;
    std::vector<Tab*> tabs_;
};

} // namespace fennik::ui
