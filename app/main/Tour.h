#pragma once

#include "app/main/Options.h"

namespace fennik::app {

/// Makes pictures of every view in both appearances in the folder that the options name, which is
/// made if it is missing, of made-up files. Needs no display. The exit code of the program; a
/// sentence is written where it is not 0.
int runTour(const Options& options);

} // namespace fennik::app
