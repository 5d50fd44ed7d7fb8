#pragma once

#include <QDBusConnection>

#include <optional>

namespace fennik::system {

/// The bus of the desktop's session, where there is one. Main thread only.
std::optional<QDBusConnection> sessionBus();

} // namespace fennik::system
