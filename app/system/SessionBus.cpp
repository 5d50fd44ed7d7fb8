#include "app/system/SessionBus.h"

namespace fennik::system {

std::optional<QDBusConnection> sessionBus() {
    // Without an address the library would start a bus of its own.
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS"))
        return std::nullopt;
    auto bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? std::optional(bus) : std::nullopt;
}

} // namespace fennik::system
