#pragma once

#include "app/ui/Theme.h"

class QWidget;

namespace fennik::ui {

/// Writes what `label` says in the colour of a token, now and after every change of theme.
void followColor(QWidget& label, const Theme& theme, QColor Tokens::* token);

} // namespace fennik::ui
