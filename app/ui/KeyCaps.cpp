#include "app/ui/KeyCaps.h"

#include "app/commands/KeyLegend.h"
#include "app/ui/PlatformWords.h"
#include "app/ui/Text.h"

namespace fennik::ui {

QString KeyCaps::of(app::KAction action) const {
    const auto combo = store_.menuCombination(action);
    return combo ? fromUtf8(app::KeyLegend::legend(*combo, store_.map())) : QString();
}

QStringList KeyCaps::all(app::KAction action) const {
    QStringList legends;
    for (const auto& combo : store_.map().combos(app::KActions::identifier(action)))
        legends << fromUtf8(app::KeyLegend::legend(combo, store_.map()));
    return legends;
}

QString KeyCaps::sentence(std::string_view text) const {
    return fromUtf8(app::KeyLegend::withLegends(text, store_.map()));
}

QString KeyCaps::titleAndKey(app::KAction action) const {
    const auto title = PlatformWords::title(action);
    const auto key = of(action);
    return key.isEmpty() ? title : QStringLiteral("%1 (%2)").arg(title, key);
}

} // namespace fennik::ui
