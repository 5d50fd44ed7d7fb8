#include "app/ui/ActionMenu.h"

#include "app/commands/KeyLegend.h"
#include "app/ui/PlatformWords.h"
#include "app/ui/Text.h"

#include <QMenu>

namespace fennik::ui {

QString itemText(const UiContext& context, app::KAction action) {
    auto title = PlatformWords::title(action);
    const auto& step = context.app.undoTitle();
    if (action == app::KAction::undo && step)
        title += QStringLiteral(": ") + fromUtf8(*step);
    auto text = menuText(title);
    // The toolkit shows what stands behind a tab where a shortcut belongs.
    const auto& map = context.shortcuts.map();
    if (const auto combo = app::FennikCommands::menuEquivalent(action, map))
        text += QLatin1Char('\t') + fromUtf8(app::KeyLegend::legend(*combo, map));
    return text;
}

app::KAction actionOf(const QAction& item) {
    return static_cast<app::KAction>(item.data().toInt());
}

void fillMenu(QMenu& menu, const UiContext& context,
              std::span<const app::FennikCommands::MenuSection> sections) {
    for (const auto& section : sections) {
        if (!menu.isEmpty())
            menu.addSeparator();
        for (const auto action : section) {
            auto* item = menu.addAction(itemText(context, action), &context.app,
                                        [&app = context.app, action] { app.perform(action); });
            item->setData(int(action));
        }
    }
}

} // namespace fennik::ui
