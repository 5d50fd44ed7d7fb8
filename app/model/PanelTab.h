#pragma once

#include "core/base/Uuid.h"
#include "core/listing/PanelSort.h"

#include <optional>
#include <string>

namespace fennik::app {

enum class PanelSide { left, right };

/// One tab of a panel. Its history is kept by the panel under its `id`.
struct PanelTab {
    Uuid id = Uuid::random();
    std::string path = "/"; ///< the absolute path of its folder, in bytes
    PanelSort sort = {};
    std::optional<std::string> cursorName = {}; ///< the item that gets the cursor back
};

} // namespace fennik::app
