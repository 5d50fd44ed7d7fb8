#pragma once

#include "app/commands/FennikCommands.h"
#include "app/commands/KeyDispatcher.h"
#include "app/model/ports/KeyboardLayout.h"
#include "app/ui/UiContext.h"

#include <QObject>

#include <optional>

class QKeyEvent;

namespace fennik::ui {

class PanelTable;

/// Sees the keys before the widgets do. Those that are pressed in the table of a panel go to the
/// dispatcher; in other fields, the keys of the menus work, and the rest is left to the field.
class KeyMonitor final : public QObject {
    Q_OBJECT

public:
    /// Listens from now on. Both outlive it.
    KeyMonitor(const UiContext& context, app::KeyboardLayout& layout, QWidget& window);

signals:
    /// A key has done its work in this table.
    void handled(PanelTable* table);
    /// The key that opens menus was pressed.
    void menuBarWanted();
    /// The key of something was pressed that is no action.
    void commandWanted(fennik::app::WindowCommand command);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool pressed(QWidget& focus, const QKeyEvent& event);
    /// What the key does that the menus show.
    std::optional<app::KAction> actionOfMenu(const KeyCombo& combo) const;

    UiContext context_;
    app::KeyboardLayout& layout_;
    QWidget& window_;
    app::KeyDispatcher dispatcher_;
};

} // namespace fennik::ui
