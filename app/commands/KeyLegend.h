#pragma once

#include "core/keys/ShortcutMap.h"

#include <optional>
#include <string>
#include <string_view>

/// Combinations on keyboards other than a Mac's. Ctrl is `command` there, Alt is `option` and Super
/// is `control`. Many keyboards lack Super, and desktops keep it for themselves, so Ctrl stands for
/// `control` too where it means nothing as `command`. Safe on any thread.
namespace fennik::app::KeyLegend {

/// What a press that no action has is to be tried as: the same with `control` for `command`. None
/// for a press without `command`, and for one that has `control` already.
std::optional<KeyCombo> controlTwin(const KeyCombo& combo);

/// What is written on the keys that do `combo` under `map`, such as "Ctrl+Shift+F5".
std::string legend(const KeyCombo& combo, const ShortcutMap& map);

/// A sentence of the program's own, with the legend in place of each combination in display form.
/// Names of files go in afterwards, as they might look like combinations.
std::string withLegends(std::string_view sentence, const ShortcutMap& map);

} // namespace fennik::app::KeyLegend
