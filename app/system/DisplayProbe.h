#pragma once

#include <string>

namespace fennik::system {

enum class Display {
    available,
    none,        ///< the environment names no display
    unreachable, ///< it names one that cannot be connected to
};

/// Whether a window can be opened, so that the question is not left to the toolkit, which would end
/// the process. Reads the environment; connects once.
Display probeDisplay();

} // namespace fennik::system
