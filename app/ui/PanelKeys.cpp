#include "app/ui/PanelKeys.h"

#include <QKeyEvent>

#include <array>

namespace fennik::ui {

namespace {

/// The number keys above the letters by their place, whatever the layout types with them.
int digitKey(const QKeyEvent& event) {
    constexpr quint32 scanCodeOfOne = 10; // X11 and Wayland number keys alike
    const auto code = event.nativeScanCode();
    if (code >= scanCodeOfOne && code < scanCodeOfOne + 9)
        return int(code - scanCodeOfOne) + 1;
    return event.key() >= Qt::Key_1 && event.key() <= Qt::Key_9 ? event.key() - Qt::Key_0 : 0;
}

} // namespace

bool PanelKeys::press(const QKeyEvent& event) {
    constexpr std::array sortKeys{SortKey::name, SortKey::ext, SortKey::size, SortKey::modified};
    auto& panel = app_.activePanel();
    const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (modifiers == (Qt::ControlModifier | Qt::AltModifier)) {
        const int digit = digitKey(event);
        if (digit < 1 || digit > int(sortKeys.size()))
            return false;
        panel.chooseSort(sortKeys[std::size_t(digit) - 1]);
        return true;
    }
    switch (QKeyCombination(modifiers, Qt::Key(event.key())).toCombined()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        panel.openItem();
        return true;
    case Qt::Key_Backspace:
        panel.goToParent();
        return true;
    case Qt::Key_Tab:
    case int(Qt::SHIFT) | Qt::Key_Tab:
    case int(Qt::SHIFT) | Qt::Key_Backtab:
        app_.switchPanel();
        return true;
    case Qt::Key_Escape:
        panel.escape();
        return true;
    case int(Qt::CTRL) | Qt::Key_R:
        panel.refresh();
        return true;
    case int(Qt::ALT) | Qt::Key_Left:
        panel.goBack();
        return true;
    case int(Qt::ALT) | Qt::Key_Right:
        panel.goForward();
        return true;
    case int(Qt::CTRL) | int(Qt::SHIFT) | Qt::Key_Period:
    case int(Qt::CTRL) | int(Qt::SHIFT) | Qt::Key_Greater:
    case int(Qt::CTRL) | int(Qt::SHIFT) | Qt::Key_Colon:
        app_.toggleHidden();
        return true;
    default:
        return false;
    }
}

} // namespace fennik::ui
