#pragma once

#include "app/commands/ShortcutStore.h"

#include <QString>
#include <QStringList>

#include <string_view>

namespace fennik::ui {

/// The legends of keys as they stand on the keyboards at hand, after the shortcuts in force.
class KeyCaps {
public:
    /// Keys that menus, fields and dialogs have whatever the shortcuts.
    inline static const QString enter = QStringLiteral("Enter");
    inline static const QString escape = QStringLiteral("Esc");
    inline static const QString backspace = QStringLiteral("Backspace");

    /// `store` outlives this object.
    explicit KeyCaps(const app::ShortcutStore& store) : store_(store) {}

    /// The key for an action where there is room for one; empty when it has none.
    QString of(app::KAction action) const;
    /// All keys for an action, the primary one first.
    QStringList all(app::KAction action) const;
    /// A sentence of the program's own, in which combinations stand as on a Mac.
    QString sentence(std::string_view text) const;
    /// The title of an action for a tooltip, with its key behind it.
    QString titleAndKey(app::KAction action) const;

private:
    const app::ShortcutStore& store_;
};

} // namespace fennik::ui
