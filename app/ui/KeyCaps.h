#pragma once

#include <QString>

namespace fennik::ui::KeyCaps {

/// The legends of keys, as they stand on the keyboards at hand.
inline const QString enter = QStringLiteral("Enter");
inline const QString escape = QStringLiteral("Esc");
inline const QString backspace = QStringLiteral("Backspace");
inline const QString back = QStringLiteral("Alt+←");
inline const QString forward = QStringLiteral("Alt+→");
inline const QString refresh = QStringLiteral("Ctrl+R");
inline const QString toggleHidden = QStringLiteral("Ctrl+Shift+.");

} // namespace fennik::ui::KeyCaps
