#include "app/ui/ActionMenu.h"

#include "app/commands/KeyLegend.h"
#include "app/ui/PlatformWords.h"
#include "app/ui/Text.h"

#include <QMenu>

namespace fennik::ui {

void fillMenu(QMenu& menu, const UiContext& context,
              std::span<const app::FennikCommands::MenuSection> sections) {
    const auto& map = context.shortcuts.map();
    for (const auto& section : sections) {
        if (!menu.isEmpty())
            menu.addSeparator();
        for (const auto action : section) {
            auto text = menuText(PlatformWords::title(action));
            // The toolkit shows what stands behind a tab where a shortcut belongs.
            if (const auto combo = app::FennikCommands::menuEquivalent(action, map))
                text += QLatin1Char('\t') + fromUtf8(app::KeyLegend::legend(*combo, map));
            menu.addAction(text, &context.app,
                           [&app = context.app, action] { app.perform(action); });
        }
    }
}

} // namespace fennik::ui
