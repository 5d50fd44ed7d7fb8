#include "app/ui/FunctionKeys.h"

#include "app/commands/KeyLegend.h"
#include "app/ui/ActionIcons.h"
#include "app/ui/PlatformWords.h"
#include "app/ui/Text.h"

#include <array>

namespace fennik::ui::FunctionKeys {

namespace {

constexpr std::array keys{"f3", "f4", "f5", "f6", "f7", "f8", "f9"};
/// Shown beside the plain keys, as long as no modifier is held.
constexpr std::array combosBehind{"opt+f5", "opt+f9"};

std::vector<KeyCombo> combos(Qt::KeyboardModifiers held) {
    using Modifier = KeyCombo::Modifier;
    KeyCombo::Modifiers modifiers;
    if (held.testFlag(Qt::ControlModifier))
        modifiers.insert(Modifier::command);
    if (held.testFlag(Qt::AltModifier))
        modifiers.insert(Modifier::option);
    if (held.testFlag(Qt::ShiftModifier))
        modifiers.insert(Modifier::shift);
    if (held.testFlag(Qt::MetaModifier))
        modifiers.insert(Modifier::control);
    std::vector<KeyCombo> result;
    result.reserve(keys.size() + combosBehind.size());
    for (const auto* key : keys)
        result.push_back({key, modifiers});
    if (held == Qt::NoModifier) {
        for (const auto* combo : combosBehind)
            result.push_back(KeyCombo::parse(combo));
    }
    return result;
}

/// What a press would do, which may be what it does with `control`.
std::optional<app::KAction> actionOf(const UiContext& context, const KeyCombo& combo) {
    if (const auto action = context.shortcuts.actionFor(combo))
        return action;
    const auto twin = app::KeyLegend::controlTwin(combo);
    return twin ? context.shortcuts.actionFor(*twin) : std::nullopt;
}

FunctionKeyBar::Cell cell(const UiContext& context, const KeyCombo& combo) {
    FunctionKeyBar::Cell cell;
    cell.key = fromUtf8(app::KeyLegend::legend(combo, context.shortcuts.map()));
    const auto action = actionOf(context, combo);
    if (!action)
        return cell;
    cell.title = fromUtf8(app::KActions::shortTitle(*action));
    // The preview has an eye in a frame elsewhere; at this size the frame is noise.
    cell.icon = *action == app::KAction::quickLook
                    ? QStringLiteral("eye")
                    : ActionIcons::iconOf(app::KActions::symbolName(*action));
    cell.toolTip = PlatformWords::title(*action);
    if (const auto reason = context.app.obstacle(*action)) {
        cell.availability = FunctionKeyBar::Availability::unavailable;
        cell.toolTip = fromUtf8(*reason);
    }
    return cell;
}

} // namespace

std::vector<FunctionKeyBar::Cell> cells(const UiContext& context, Qt::KeyboardModifiers held) {
    std::vector<FunctionKeyBar::Cell> result;
    for (const auto& combo : combos(held))
        result.push_back(cell(context, combo));
    return result;
}

std::optional<app::KAction> action(const UiContext& context, int index,
                                   Qt::KeyboardModifiers held) {
    const auto all = combos(held);
    const auto position = static_cast<std::size_t>(index);
    return position < all.size() ? actionOf(context, all[position]) : std::nullopt;
}

} // namespace fennik::ui::FunctionKeys
