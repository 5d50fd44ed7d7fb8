#pragma once

#include "app/main/Session.h"

#include <string>

namespace fennik::app {

/// Shows the session's window on a screen that is not there, waits until both panels have settled
/// (or do not answer), and writes its picture. The exit code of the program.
int takeScreenshot(Session& session, const std::string& file);

} // namespace fennik::app
