#include "app/system/X11KeyboardLayout.h"

#include <QGuiApplication>

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-x11.h>

namespace fennik::system {

namespace {

/// The events of the keyboard extension that announce another layout, by their second byte.
constexpr std::uint8_t newKeyboardNotify = 0;
constexpr std::uint8_t mapNotify = 1;

} // namespace

X11KeyboardLayout::X11KeyboardLayout() : context_(makeXkbContext()) {
    auto* connection = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    if (!context_ || xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION,
                                                 XKB_X11_MIN_MINOR_XKB_VERSION,
                                                 XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr,
                                                 nullptr, &firstEvent_, nullptr) == 0)
        return;
    connection_ = connection;
    qGuiApp->installNativeEventFilter(this);
}

std::optional<std::string> X11KeyboardLayout::character(const app::PressedKey& key) {
    if (connection_ && !keymap_)
        fetch();
    if (!keymap_ || key.scanCode == 0)
        return std::nullopt;
    return keymap_->character(key, key.modifiers >> 13 & 3);
}

bool X11KeyboardLayout::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const auto kind = event->response_type & 0x7F; // the highest bit says who sent it
    if (kind == firstEvent_ && (event->pad0 == newKeyboardNotify || event->pad0 == mapNotify))
        keymap_.reset();
    return false;
}

void X11KeyboardLayout::fetch() {
    const auto device = xkb_x11_get_core_keyboard_device_id(connection_);
    if (device < 0)
        return;
    if (auto* keymap = xkb_x11_keymap_new_from_device(context_.get(), connection_, device,
                                                      XKB_KEYMAP_COMPILE_NO_FLAGS))
        keymap_.emplace(keymap);
}

} // namespace fennik::system
