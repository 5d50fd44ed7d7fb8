#pragma once

#include "app/commands/FennikCommands.h"
#include "app/ui/UiContext.h"

#include <QMenuBar>

class QToolButton;

namespace fennik::ui {

/// The menus of the window.
class MenuBar final : public QMenuBar {
    Q_OBJECT

public:
    MenuBar(const UiContext& context, QWidget* parent);

    /// Opens the first menu for the keyboard.
    void open();

signals:
    void menuOpened(bool isOpen);
    /// An item that is no action was chosen.
    void commandChosen(fennik::app::WindowCommand command);

private:
    void build();
    void add(QMenu& menu, app::WindowCommand command);
    void add(QMenu& menu, app::MenuChoice choice);
    void takeTheme();
    /// The toolkit's own, where there is no room for all menus.
    QToolButton* moreButton() const;
    void nameUndo();

    UiContext context_;
};

} // namespace fennik::ui
