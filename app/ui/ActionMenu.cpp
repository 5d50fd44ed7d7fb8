#include "app/ui/ActionMenu.h"

#include "app/commands/KeyLegend.h"
#include "app/ui/PlatformWords.h"
#include "app/ui/Text.h"

#include <QMenu>

namespace fennik::ui {

namespace {

/// The toolkit shows what stands behind a tab where a shortcut belongs.
QString withKey(const QString& text, const KeyCombo& key, const ShortcutMap& map) {
    return text + QLatin1Char('\t') + fromUtf8(app::KeyLegend::legend(key, map));
}

} // namespace

QString itemText(const UiContext& context, app::KAction action) {
    auto title = PlatformWords::title(action);
    const auto& step = context.app.undoTitle();
    if (action == app::KAction::undo && step)
        title += QStringLiteral(": ") + fromUtf8(*step);
    const auto text = menuText(title);
    const auto& map = context.shortcuts.map();
    const auto combo = app::FennikCommands::menuEquivalent(action, map);
    return combo ? withKey(text, *combo, map) : text;
}

std::optional<app::KAction> actionOf(const QAction& item) {
    return item.data().isValid() ? std::optional(static_cast<app::KAction>(item.data().toInt()))
                                 : std::nullopt;
}

void addItem(QMenu& menu, const UiContext& context, app::KAction action) {
    auto* item = menu.addAction(itemText(context, action), &context.app,
                                [&app = context.app, action] { app.perform(action); });
    item->setData(int(action));
}

QAction* addItem(QMenu& menu, const UiContext& context, app::WindowCommand command) {
    const auto text = menuText(fromUtf8(app::FennikCommands::title(command)));
    const auto& map = context.shortcuts.map();
    const auto combo = app::FennikCommands::fixedCombo(command, map);
    return menu.addAction(combo ? withKey(text, *combo, map) : text);
}

void fillMenu(QMenu& menu, const UiContext& context,
              std::span<const app::FennikCommands::ActionSection> sections) {
    for (const auto& section : sections) {
        if (!menu.isEmpty())
            menu.addSeparator();
        for (const auto action : section)
            addItem(menu, context, action);
    }
}

} // namespace fennik::ui
