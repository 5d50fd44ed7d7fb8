#pragma once

#include "app/model/ports/KeyboardLayout.h"
#include "app/system/Keymap.h"

#include <QAbstractNativeEventFilter>

struct xcb_connection_t;

namespace fennik::system {

/// The layout of an X server's keyboard. Follows its changes: the server tells of them on the
/// toolkit's connection before it sends the next key, and only that key pays for fetching the
/// layout anew, a millisecond. Needs a QGuiApplication that is connected to an X server.
class X11KeyboardLayout final : public app::KeyboardLayout, private QAbstractNativeEventFilter {
public:
    X11KeyboardLayout();

    std::optional<std::string> character(const app::PressedKey& key) override;

private:
    bool nativeEventFilter(const QByteArray& kind, void* message, qintptr* result) override;
    void fetch();

    XkbContext context_;
    xcb_connection_t* connection_ = nullptr; ///< the toolkit's; null if it knows no layouts
    std::uint8_t firstEvent_ = 0;            ///< of the keyboard extension
    std::optional<Keymap> keymap_;           ///< none until fetched, and again after a change
};

} // namespace fennik::system
