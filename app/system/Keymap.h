#pragma once

#include "app/model/ports/KeyboardLayout.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct xkb_context;
struct xkb_keymap;
struct xkb_state;

namespace fennik::system {

struct ReleaseXkbContext {
    void operator()(xkb_context* context) const;
};
using XkbContext = std::unique_ptr<xkb_context, ReleaseXkbContext>;
/// What keymaps are made in; null if there is no memory.
XkbContext makeXkbContext();

/// The layouts of one keyboard, side by side as groups, one of which is in use at a time. For one
/// thread at a time.
class Keymap {
public:
    using Group = std::uint32_t;

    /// Takes the reference over; `keymap` is not null.
    explicit Keymap(xkb_keymap* keymap);

    /// The keymap that a display server has sent as text; none if the text is damaged.
    static std::optional<Keymap> fromText(std::string_view text);

    /// The first group in which a key makes its symbol; for servers that do not tell the group.
    std::optional<Group> groupMaking(const app::PressedKey& key) const;
    /// What names a key while a group is in use, as `app::KeyboardLayout` says.
    std::string character(const app::PressedKey& key, Group group) const;

private:
    struct Release {
        void operator()(xkb_keymap* keymap) const;
        void operator()(xkb_state* state) const;
    };

    std::uint32_t symbol(std::uint32_t scanCode, std::uint32_t modifiers, Group group) const;

    std::unique_ptr<xkb_keymap, Release> keymap_;
    std::unique_ptr<xkb_state, Release> state_;
    std::vector<bool> isLatin_; ///< for each group
};

} // namespace fennik::system
