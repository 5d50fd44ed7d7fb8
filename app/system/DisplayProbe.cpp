#include "app/system/DisplayProbe.h"

#include <QByteArray>
#include <QtGlobal>

#include <algorithm>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

namespace fennik::system {

namespace {

bool waylandAnswers(const QByteArray& name) {
    const auto path = name.startsWith('/') ? name : qgetenv("XDG_RUNTIME_DIR") + '/' + name;
    sockaddr_un address{};
    if (std::size_t(path.size()) >= sizeof address.sun_path)
        return false;
    address.sun_family = AF_UNIX;
    std::ranges::copy(path, address.sun_path);
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0)
        return false;
    const bool answers =
        connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(descriptor);
    return answers;
}

bool xAnswers() {
    auto* connection = xcb_connect(nullptr, nullptr);
    const bool answers = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return answers;
}

} // namespace

Display probeDisplay() {
    // Whoever names a platform of the toolkit knows what it needs.
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return Display::available;
    const auto wayland = qgetenv("WAYLAND_DISPLAY");
    const bool hasX = !qEnvironmentVariableIsEmpty("DISPLAY");
    if (wayland.isEmpty() && !hasX)
        return Display::none;
    const bool answers = (!wayland.isEmpty() && waylandAnswers(wayland)) || (hasX && xAnswers());
    return answers ? Display::available : Display::unreachable;
}

} // namespace fennik::system
