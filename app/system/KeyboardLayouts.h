#pragma once

#include "app/model/ports/KeyboardLayout.h"

#include <memory>

namespace fennik::system {

/// The layout of the keyboard that the toolkit's windows get their keys from. Needs a
/// QGuiApplication, and not to outlive it.
std::unique_ptr<app::KeyboardLayout> makeKeyboardLayout();

} // namespace fennik::system
