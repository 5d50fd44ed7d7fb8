#include "app/system/KeyboardLayouts.h"

#include "app/system/WaylandKeyboardLayout.h"
#include "app/system/X11KeyboardLayout.h"

#include <QGuiApplication>

namespace fennik::system {

namespace {

/// Where windows are drawn without a display.
class UnknownKeyboardLayout final : public app::KeyboardLayout {
public:
    std::optional<std::string> character(const app::PressedKey&) override { return std::nullopt; }
};

} // namespace

std::unique_ptr<app::KeyboardLayout> makeKeyboardLayout() {
    // Platforms without windows claim an interface to X11, too.
    const auto platform = QGuiApplication::platformName();
    if (platform == QStringLiteral("xcb"))
        return std::make_unique<X11KeyboardLayout>();
    if (platform.startsWith(QStringLiteral("wayland")))
        return std::make_unique<WaylandKeyboardLayout>();
    return std::make_unique<UnknownKeyboardLayout>();
}

} // namespace fennik::system
