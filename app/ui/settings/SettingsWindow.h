#pragma once

#include "app/ui/UiContext.h"

#include <QWidget>

#include <functional>
#include <string_view>
#include <vector>

class QScrollArea;
class QStackedWidget;

namespace fennik::app {
class KeyboardLayout;
}

namespace fennik::ui {

class DialogHost;
class SettingsTabs;

/// The settings in a window of their own, over the main one. Closing only hides it.
class SettingsWindow final : public QWidget {
    Q_OBJECT

public:
    /// With the page that was open last. `owner` is the window over which it stands.
    SettingsWindow(const UiContext& context, app::KeyboardLayout& layout, QWidget* owner);

    /// Shows the window with the keyboard in it, before all others.
    void open();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Page {
        std::string_view value = {}; ///< in the settings
        QString title = {};
        QString icon = {};
        std::function<QWidget*()> make = {};
        QWidget* widget = nullptr; ///< once it has been shown
    };

    QScrollArea* scrolling(QWidget* content);
    void showPage(int index);
    /// To the width of the window.
    void fitPages();

    UiContext context_;
    std::vector<Page> pageList_;
    SettingsTabs* tabs_ = nullptr;
    QStackedWidget* pages_;
    DialogHost* cards_; ///< its own questions
};

} // namespace fennik::ui
