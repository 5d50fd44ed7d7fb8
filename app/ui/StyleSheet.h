#pragma once

#include "app/ui/Theme.h"

#include <QStringView>

class QWidget;

/// What the toolkit's own widgets need a style sheet for; all others paint themselves, or
/// `WindowStyle` does. On the main thread.
namespace fennik::ui {

enum class StyleSheet {
    menus,  ///< and tool tips
    fields, ///< and their menus
    all,    ///< and lists to choose from
};

/// The widget and those below it look like the theme, and change with it. `more` is read behind the
/// sheet and wins over it; it has to live as long as the widget. In it "$name" is a colour or a
/// measure of the sheet, and "6u" are six pixels at the default text size. A field whose property
/// "invalid" is true shows it.
void wear(QWidget& widget, const Theme& theme, StyleSheet sheet, QStringView more = {});

/// The same, but the sheet is read when the widget is first shown: reading takes its time, which
/// the start of the program has not.
void wearOnceShown(QWidget& widget, const Theme& theme, StyleSheet sheet, QStringView more = {});

} // namespace fennik::ui
