#include "app/ui/KeyPress.h"

#include "core/keys/KeyNames.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>
#include <string>

namespace fennik::ui::KeyPress {

namespace {

using Modifier = KeyCombo::Modifier;

struct ModifierFlag {
    Qt::KeyboardModifier modifier = {};
    std::uint32_t flag = 0;
};

constexpr std::array<ModifierFlag, 4> modifierFlags{{
    {Qt::ControlModifier, KeyEvent::commandFlag},
    {Qt::AltModifier, KeyEvent::optionFlag},
    {Qt::ShiftModifier, KeyEvent::shiftFlag},
    {Qt::MetaModifier, KeyEvent::controlFlag},
}};

struct KeyName {
    Qt::Key key = {};
    std::string_view name = {};
};

constexpr std::array<KeyName, 18> keyNames{{
    {Qt::Key_Space, "space"},
    {Qt::Key_Tab, "tab"},
    {Qt::Key_Backtab, "tab"},
    {Qt::Key_Return, "return"},
    {Qt::Key_Enter, "enter"},
    {Qt::Key_Backspace, "delete"},
    {Qt::Key_Escape, "escape"},
    {Qt::Key_Delete, "forwarddelete"},
    {Qt::Key_Up, "up"},
    {Qt::Key_Down, "down"},
    {Qt::Key_Left, "left"},
    {Qt::Key_Right, "right"},
    {Qt::Key_Home, "home"},
    {Qt::Key_End, "end"},
    {Qt::Key_PageUp, "pageup"},
    {Qt::Key_PageDown, "pagedown"},
    {Qt::Key_Insert, "help"},
    {Qt::Key_Help, "help"},
}};

constexpr std::array<KeyName, 3> keypadNames{{
    {Qt::Key_Plus, "numplus"},
    {Qt::Key_Minus, "numminus"},
    {Qt::Key_Asterisk, "nummultiply"},
}};

bool isOnKeypad(const QKeyEvent& event) {
    // On Wayland the toolkit leaves its sign out, but X11's symbols tell.
    constexpr quint32 firstSymbol = 0xFF80;
    constexpr quint32 lastSymbol = 0xFFBD;
    const auto symbol = event.nativeVirtualKey();
    return event.modifiers().testFlag(Qt::KeypadModifier) ||
           (symbol >= firstSymbol && symbol <= lastSymbol);
}

/// The digit of a number key above the letters, whatever the layout types with it.
std::optional<int> digit(const QKeyEvent& event) {
    constexpr quint32 scanCodeOfOne = 10;
    constexpr quint32 scanCodeOfZero = 19;
    const auto code = event.nativeScanCode();
    if (code >= scanCodeOfOne && code <= scanCodeOfZero)
        return int(code - scanCodeOfOne + 1) % 10;
    const bool isDigit = event.key() >= Qt::Key_0 && event.key() <= Qt::Key_9;
    return code == 0 && isDigit && !isOnKeypad(event) ? std::optional(event.key() - Qt::Key_0)
                                                      : std::nullopt;
}

/// The name of a key that counts by its place; empty for the others.
std::string placedName(const QKeyEvent& event) {
    if (const auto found = digit(event))
        return std::to_string(*found);
    const auto key = Qt::Key(event.key());
    if (key >= Qt::Key_F1 && key <= Qt::Key_F15)
        return 'f' + std::to_string(key - Qt::Key_F1 + 1);
    const auto nameAmong = [key](const auto& names) {
        const auto* found = std::ranges::find(names, key, &KeyName::key);
        return found == names.end() ? std::string() : std::string(found->name);
    };
    if (isOnKeypad(event))
        if (auto name = nameAmong(keypadNames); !name.empty())
            return name;
    return nameAmong(keyNames);
}

std::string characters(const QKeyEvent& event, app::KeyboardLayout& layout) {
    // Without NumLock, which the layout leaves out, the keypad would have no digits.
    if (!isOnKeypad(event))
        if (auto character = layout.character(
                {event.nativeScanCode(), event.nativeModifiers(), event.nativeVirtualKey()}))
            return *std::move(character);
    // The toolkit numbers the keys that type no character above all characters.
    const auto key = char32_t(event.key());
    return key < char32_t(Qt::Key_Escape) ? QString::fromUcs4(&key, 1).toStdString()
                                          : std::string();
}

} // namespace

KeyEvent keyEvent(const QKeyEvent& event, app::KeyboardLayout& layout) {
    KeyEvent result;
    for (const auto& [modifier, flag] : modifierFlags)
        if (event.modifiers().testFlag(modifier))
            result.modifierFlags |= flag;
    // Only Shift makes this key of Tab, and not every sender of events tells of it.
    if (event.key() == Qt::Key_Backtab)
        result.modifierFlags |= KeyEvent::shiftFlag;
    auto name = placedName(event);
    if (name.empty()) {
        result.characters = characters(event, layout);
        // With Shift, the space bar of some layouts types a space of another kind.
        if (result.characters == " ")
            name = "space";
    }
    result.keyCode = KeyNames::keyCodeOf(name).value_or(KeyEvent::noKeyCode);
    return result;
}

std::optional<KeyCombo> combo(const QKeyEvent& event, app::KeyboardLayout& layout,
                              const std::function<bool(const KeyCombo&)>& isOwned) {
    auto pressed = KeyCombo::fromEvent(keyEvent(event, layout));
    if (!pressed || !pressed->modifiers.contains(Modifier::command) ||
        pressed->modifiers.contains(Modifier::control) || isOwned(*pressed))
        return pressed;
    auto twin = *pressed;
    twin.modifiers.remove(Modifier::command);
    twin.modifiers.insert(Modifier::control);
    return isOwned(twin) ? twin : pressed;
}

} // namespace fennik::ui::KeyPress
