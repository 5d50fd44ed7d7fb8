#pragma once

#include "app/model/AppModel.h"

class QKeyEvent;

namespace fennik::ui {

/// What the keys of a panel do beyond moving its cursor.
class PanelKeys {
public:
    explicit PanelKeys(app::AppModel& app) : app_(app) {}

    /// Does what the key stands for, in the active panel. False for a key without a meaning.
    bool press(const QKeyEvent& event);

private:
    app::AppModel& app_;
};

} // namespace fennik::ui
