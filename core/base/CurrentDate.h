#pragma once

#include "core/base/Date.h"

namespace fennik {

/// As the clock of the system says, which may be set back.
Date currentDate();

} // namespace fennik
