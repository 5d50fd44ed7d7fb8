#pragma once

#include "core/base/FileUrl.h"

#include <string>

/// How a terminal that is driven by scripts is told what to do.
namespace fennik::app::TerminalScript {

/// An AppleScript that has the Mac's own terminal begin in `folder`.
std::string opening(const FileUrl& folder);

} // namespace fennik::app::TerminalScript
