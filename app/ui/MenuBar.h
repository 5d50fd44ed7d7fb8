#pragma once

#include "app/ui/UiContext.h"

#include <QMenuBar>

namespace fennik::ui {

/// The menus of the window. Their items show the keys but do not listen to them: `KeyMonitor` does,
/// so that a key means the same wherever it is pressed.
class MenuBar final : public QMenuBar {
    Q_OBJECT

public:
    MenuBar(const UiContext& context, QWidget* parent);

    /// Opens the first menu for the keyboard.
    void open();

signals:
    void menuOpened(bool isOpen);

private:
    void build();
    void takeTheme();

    UiContext context_;
};

} // namespace fennik::ui
