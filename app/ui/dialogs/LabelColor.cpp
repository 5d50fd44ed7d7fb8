#include "app/ui/dialogs/LabelColor.h"

#include <QWidget>

namespace fennik::ui {

void followColor(QWidget& label, const Theme& theme, QColor Tokens::* token) {
    const auto takeTheme = [&label, &theme, token] {
        auto colors = label.palette();
        colors.setColor(QPalette::WindowText, theme.tokens().*token);
        label.setPalette(colors);
    };
    takeTheme();
    QObject::connect(&theme, &Theme::changed, &label, takeTheme);
}

} // namespace fennik::ui
