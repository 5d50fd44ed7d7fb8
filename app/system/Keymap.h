#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct xkb_keymap;
struct xkb_state;

namespace fennik::system {

/// The layouts of one keyboard, side by side as groups, one of which is in use at a time.
class Keymap {
public:
    using Group = std::uint32_t;

    /// Takes the reference over; `keymap` is not null.
    explicit Keymap(xkb_keymap* keymap);

    /// `group` if it types Latin letters, otherwise the first one that does.
    std::optional<Group> latinGroup(Group group) const;
    /// The character that a key types in a group, in UTF-8; empty for none. Of X11's modifiers
    /// only those count that reach further characters, such as AltGr.
    std::string character(std::uint32_t scanCode, std::uint32_t modifiers, Group group) const;

private:
    struct Release {
        void operator()(xkb_keymap* keymap) const;
        void operator()(xkb_state* state) const;
    };

    std::unique_ptr<xkb_keymap, Release> keymap_;
    std::unique_ptr<xkb_state, Release> state_;
    std::vector<bool> isLatin_; ///< for each group
};

} // namespace fennik::system
