#include "app/system/X11KeyboardLayout.h"

#include <QGuiApplication>

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

namespace fennik::system {

namespace {

/// The events of the keyboard extension that announce another layout, by their second byte.
constexpr std::uint8_t newKeyboardNotify = 0;
constexpr std::uint8_t mapNotify = 1;

} // namespace

void X11KeyboardLayout::Release::operator()(xkb_context* context) const {
    xkb_context_unref(context);
}

X11KeyboardLayout::X11KeyboardLayout() : context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS)) {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || !context_)
        return;
    // Its remarks say nothing to the user.
    xkb_context_set_log_level(context_.get(), XKB_LOG_LEVEL_CRITICAL);
    if (xkb_x11_setup_xkb_extension(
            x11->connection(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &firstEvent_, nullptr) == 0)
        return;
    connection_ = x11->connection();
    qGuiApp->installNativeEventFilter(this);
}

X11KeyboardLayout::~X11KeyboardLayout() = default;

std::optional<std::string> X11KeyboardLayout::character(const app::PressedKey& key) {
    if (connection_ && !keymap_)
        fetch();
    if (!keymap_ || key.scanCode == 0)
        return std::nullopt;
    if (const auto group = keymap_->latinGroup(key.modifiers >> 13 & 3))
        return keymap_->character(key.scanCode, key.modifiers, *group);
    const auto* fallback = unitedStates();
    return fallback ? fallback->character(key.scanCode, 0, 0) : std::string();
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

const Keymap* X11KeyboardLayout::unitedStates() {
    if (!unitedStates_) {
        const xkb_rule_names names{
            .rules = "evdev", .model = "pc105", .layout = "us", .variant = "", .options = ""};
        if (auto* keymap =
                xkb_keymap_new_from_names(context_.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS))
            unitedStates_.emplace(keymap);
    }
    return unitedStates_ ? &*unitedStates_ : nullptr;
}

} // namespace fennik::system
