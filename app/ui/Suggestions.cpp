#include "app/ui/Suggestions.h"

namespace fennik::ui {

void askForSuggestions(app::AppModel& app, const QString& typed, const FileUrl& base) {
    const bool showsHidden = app.settings().get(app::SettingKeys::showHidden);
    app.pathSuggestions().ask(typed.toStdString(), base,
                              showsHidden ? PathCompleter::IncludeHidden::yes
                                          : PathCompleter::IncludeHidden::no);
}

} // namespace fennik::ui
