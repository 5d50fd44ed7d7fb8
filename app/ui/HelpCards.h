#pragma once

#include "app/ui/UiContext.h"
#include "app/ui/dialogs/KeysDialog.h"
#include "app/ui/dialogs/TipsDialog.h"

#include <vector>

/// What the menu of help shows, made from the shortcuts in force.
namespace fennik::ui::HelpCards {

std::vector<TipsDialog::Page> tips(const KeyCaps& keys);

/// The actions in the order of the catalogue, and the keys that are always the same.
std::vector<KeysDialog::Group> keys(const app::ShortcutStore& shortcuts);

/// The licences of the program and of what it is made of, with their texts.
QString licenses();

} // namespace fennik::ui::HelpCards
