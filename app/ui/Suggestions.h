#pragma once

#include "app/model/AppModel.h"

#include <QString>

namespace fennik::ui {

/// Asks for folders that complete a path in the text of a field, relative ones seen from `base`.
void askForSuggestions(app::AppModel& app, const QString& typed, const FileUrl& base);

} // namespace fennik::ui
