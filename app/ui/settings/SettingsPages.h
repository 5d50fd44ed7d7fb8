#pragma once

#include "app/ui/UiContext.h"

class QWidget;

/// The pages of the settings window but for the shortcuts.
namespace fennik::ui::SettingsPages {

/// How the window looks, what it lists, and with what it opens.
QWidget* general(const UiContext& context);
/// The trash, the queue, archives.
QWidget* operations(const UiContext& context);

} // namespace fennik::ui::SettingsPages
