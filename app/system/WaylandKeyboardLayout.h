#pragma once

#include "app/model/ports/KeyboardLayout.h"
#include "app/system/Keymap.h"

#include <QSocketNotifier>

struct wl_display;
struct wl_keyboard;
struct wl_registry;
struct wl_seat;

namespace fennik::system {

/// The layout of a Wayland compositor's keyboard, which it sends, at first and after each change,
/// to everybody who asks for the keyboard. This asks on a connection of its own, because the
/// toolkit's cannot be reached, so keys that come at the same moment as a change may overtake it.
/// Nothing here waits: until the answer comes, no layout is known.
class WaylandKeyboardLayout final : public app::KeyboardLayout {
public:
    WaylandKeyboardLayout();

    std::optional<std::string> character(const app::PressedKey& key) override;

private:
    struct Release {
        void operator()(wl_display* display) const;
        void operator()(wl_registry* registry) const;
        void operator()(wl_seat* seat) const;
        void operator()(wl_keyboard* keyboard) const;
    };
    struct Listeners;

    /// Takes in what has come.
    void read();

    std::unique_ptr<wl_display, Release> display_; ///< null if there is no compositor
    std::unique_ptr<wl_registry, Release> registry_;
    std::unique_ptr<wl_seat, Release> seat_; ///< the first one
    std::unique_ptr<wl_keyboard, Release> keyboard_;
    std::unique_ptr<QSocketNotifier> incoming_;
    std::optional<Keymap> keymap_;
};

} // namespace fennik::system
