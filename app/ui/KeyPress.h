#pragma once

#include "app/model/ports/KeyboardLayout.h"
#include "core/keys/KeyCombo.h"

#include <functional>
#include <optional>

class QKeyEvent;

/// The presses of keys as combinations. Ctrl counts as command, Alt as option, Super as control.
namespace fennik::ui::KeyPress {

/// What `KeyCombo::fromEvent` reads. The number keys above the letters have their key code by
/// their place, the other named keys by what the layout makes of them, and all the rest have the
/// character they type without modifiers. The keypad types what NumLock says.
/// Where no layout is known, the toolkit's own idea of the key has to do, Shift and all.
KeyEvent keyEvent(const QKeyEvent& event, app::KeyboardLayout& layout);

/// The combination of a press; none for one of a modifier alone, or of a dead key. One with
/// command that nobody owns counts with control in its place, if that is owned: people expect
/// Ctrl of it.
std::optional<KeyCombo> combo(const QKeyEvent& event, app::KeyboardLayout& layout,
                              const std::function<bool(const KeyCombo&)>& isOwned);

} // namespace fennik::ui::KeyPress
