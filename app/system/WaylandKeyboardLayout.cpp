#include "app/system/WaylandKeyboardLayout.h"

#include <cstring>
#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>

namespace fennik::system {

namespace {

/// None if the text cannot be read.
std::optional<Keymap> keymapIn(int file, std::size_t size) {
    void* place = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    if (place == MAP_FAILED)
        return std::nullopt;
    const auto* text = static_cast<const char*>(place);
    auto keymap = Keymap::fromText({text, strnlen(text, size)});
    munmap(place, size);
    return keymap;
}

WaylandKeyboardLayout& layoutOf(void* data) {
    return *static_cast<WaylandKeyboardLayout*>(data);
}

} // namespace

/// What the compositor tells. It tells of keys only those who have a window.
struct WaylandKeyboardLayout::Listeners {
    static constexpr wl_keyboard_listener keyboard{
        .keymap =
            [](void* data, wl_keyboard*, std::uint32_t format, int file, std::uint32_t size) {
                auto& keymap = layoutOf(data).keymap_;
                keymap.reset();
                if (format == WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1)
                    keymap = keymapIn(file, size);
                close(file);
            },
        .enter = [](void*, wl_keyboard*, std::uint32_t, wl_surface*, wl_array*) {},
        .leave = [](void*, wl_keyboard*, std::uint32_t, wl_surface*) {},
        .key = [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t,
                  std::uint32_t) {},
        .modifiers = [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t,
                        std::uint32_t, std::uint32_t) {},
        .repeat_info = [](void*, wl_keyboard*, std::int32_t, std::int32_t) {},
    };
    static constexpr wl_seat_listener seat{
        .capabilities =
            [](void* data, wl_seat* seat, std::uint32_t capabilities) {
                auto& layout = layoutOf(data);
                if ((capabilities & WL_SEAT_CAPABILITY_KEYBOARD) == 0) {
                    layout.keyboard_.reset();
                } else if (!layout.keyboard_) {
                    layout.keyboard_.reset(wl_seat_get_keyboard(seat));
                    wl_keyboard_add_listener(layout.keyboard_.get(), &keyboard, data);
                }
            },
        .name = [](void*, wl_seat*, const char*) {},
    };
    static constexpr wl_registry_listener registry{
        .global =
            [](void* data, wl_registry* registry, std::uint32_t name, const char* interface,
               std::uint32_t) {
                auto& layout = layoutOf(data);
                if (layout.seat_ || std::strcmp(interface, wl_seat_interface.name) != 0)
                    return;
                layout.seat_.reset(
                    static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1)));
                wl_seat_add_listener(layout.seat_.get(), &seat, data);
            },
        .global_remove = [](void*, wl_registry*, std::uint32_t) {},
    };
};

void WaylandKeyboardLayout::Release::operator()(wl_display* display) const {
    wl_display_disconnect(display);
}

void WaylandKeyboardLayout::Release::operator()(wl_registry* registry) const {
    wl_registry_destroy(registry);
}

void WaylandKeyboardLayout::Release::operator()(wl_seat* seat) const {
    wl_seat_destroy(seat);
}

void WaylandKeyboardLayout::Release::operator()(wl_keyboard* keyboard) const {
    wl_keyboard_destroy(keyboard);
}

WaylandKeyboardLayout::WaylandKeyboardLayout() : display_(wl_display_connect(nullptr)) {
    if (!display_)
        return;
    registry_.reset(wl_display_get_registry(display_.get()));
    wl_registry_add_listener(registry_.get(), &Listeners::registry, this);
    incoming_ =
        std::make_unique<QSocketNotifier>(wl_display_get_fd(display_.get()), QSocketNotifier::Read);
    QObject::connect(incoming_.get(), &QSocketNotifier::activated, incoming_.get(),
                     [this] { read(); });
    wl_display_flush(display_.get());
}

std::optional<std::string> WaylandKeyboardLayout::character(const app::PressedKey& key) {
    // The toolkit's connection may have brought the key before this one is looked at.
    read();
    if (!keymap_ || key.scanCode == 0)
        return std::nullopt;
    const auto group = keymap_->groupMaking(key);
    return group ? std::optional(keymap_->character(key, *group)) : std::nullopt;
}

void WaylandKeyboardLayout::read() {
    if (!display_)
        return;
    auto* display = display_.get();
    while (wl_display_get_error(display) == 0 && wl_display_prepare_read(display) != 0)
        wl_display_dispatch_pending(display);
    if (wl_display_get_error(display) != 0) {
        // Without its compositor the connection would ask to be read for ever.
        incoming_->setEnabled(false);
        return;
    }
    pollfd incoming{wl_display_get_fd(display), POLLIN, 0};
    if (poll(&incoming, 1, 0) > 0)
        wl_display_read_events(display);
    else
        wl_display_cancel_read(display);
    wl_display_dispatch_pending(display);
    wl_display_flush(display);
}

} // namespace fennik::system
