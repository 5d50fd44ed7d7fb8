#pragma once

#include "app/model/ports/KeyboardLayout.h"
#include "app/system/Keymap.h"

#include <QAbstractNativeEventFilter>

struct xcb_connection_t;
struct xkb_context;

namespace fennik::system {

/// The layout of an X server's keyboard. Follows its changes: the server tells of them on the
/// toolkit's connection before it sends the next key, and only that key pays for fetching the
/// layout anew, a millisecond. Without an X server, no layout can be learned.
/// Needs a QGuiApplication.
class X11KeyboardLayout final : public app::KeyboardLayout, private QAbstractNativeEventFilter {
public:
    X11KeyboardLayout();
    ~X11KeyboardLayout() override;

    std::optional<std::string> character(const app::PressedKey& key) override;

private:
    struct Release {
        void operator()(xkb_context* context) const;
    };

    bool nativeEventFilter(const QByteArray& kind, void* message, qintptr* result) override;
    void fetch();
    const Keymap* unitedStates();

    std::unique_ptr<xkb_context, Release> context_;
    xcb_connection_t* connection_ = nullptr; ///< the toolkit's
    std::uint8_t firstEvent_ = 0;            ///< of the keyboard extension
    std::optional<Keymap> keymap_;           ///< none until fetched, and again after a change
    std::optional<Keymap> unitedStates_;     ///< none until needed
};

} // namespace fennik::system
