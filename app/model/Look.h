#pragma once

#include <optional>
#include <string_view>

namespace fennik::app {

/// In which colours the window is drawn, as the user wants it.
enum class Look { system, light, dark };

/// How high the rows of the panels are.
enum class Density { compact, regular, comfortable };

/// The names that stand in the settings. Safe on any thread.
std::string_view nameOf(Look look);
std::string_view nameOf(Density density);
/// None for a name that means nothing.
std::optional<Look> lookNamed(std::string_view name);
std::optional<Density> densityNamed(std::string_view name);

} // namespace fennik::app
