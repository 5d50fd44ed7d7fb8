#include "app/ui/WindowStyle.h"

namespace fennik::ui {

WindowStyle::WindowStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

int WindowStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                           QStyleHintReturn* result) const {
    const bool isStill = hint == SH_Widget_Animation_Duration && isMotionReduced_;
    const bool isMenuOfScrollBar = hint == SH_ScrollBar_ContextMenu; // nobody needs one
    return isStill || isMenuOfScrollBar ? 0 : QProxyStyle::styleHint(hint, option, widget, result);
}

QIcon WindowStyle::standardIcon(StandardPixmap icon, const QStyleOption* option,
                                const QWidget* widget) const {
    // A menu bar asks for it when it is made, and its being a picture in a file would have the
    // toolkit load a library for each kind of picture there is. `MenuBar` has an icon of ours.
    return icon == SP_ToolBarHorizontalExtensionButton
               ? QIcon()
               : QProxyStyle::standardIcon(icon, option, widget);
}

} // namespace fennik::ui
