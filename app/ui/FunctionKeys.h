#pragma once

#include "app/ui/FunctionKeyBar.h"
#include "app/ui/UiContext.h"

#include <optional>
#include <vector>

/// What the bar of function keys shows: the shortcuts in force, never a list of its own.
namespace fennik::ui::FunctionKeys {

std::vector<FunctionKeyBar::Cell> cells(const UiContext& context, Qt::KeyboardModifiers held);

/// What a click on a cell does; none where the key does nothing.
std::optional<app::KAction> action(const UiContext& context, int index, Qt::KeyboardModifiers held);

} // namespace fennik::ui::FunctionKeys
