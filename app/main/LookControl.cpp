#include "app/main/LookControl.h"

#include <utility>

namespace fennik::app {

using ui::Appearance;

namespace {

Look chosenLook(const Settings& settings) {
    return lookNamed(settings.get(SettingKeys::appearance)).value_or(Look::system);
}

} // namespace

LookControl::LookControl(Look asked, Appearance ofDesktop, AppModel& app, ui::Theme& theme)
    : app_(app),
      theme_(theme),
      ofDesktop_(ofDesktop),
      chosen_(chosenLook(app.settings())),
      look_(asked != Look::system ? asked : chosen_) {
    connect(&app_, &AppModel::changed, this, [this](AppChanges changes) {
        if (changes.testFlag(AppChange::settings))
            takeSettings();
    });
    takeSettings();
    apply();
}

void LookControl::setDesktop(Appearance ofDesktop) {
    ofDesktop_ = ofDesktop;
    apply();
}

void LookControl::takeSettings() {
    const auto& settings = app_.settings();
    theme_.setDensity(densityNamed(settings.get(SettingKeys::density)).value_or(Density::regular));
    const auto chosen = chosenLook(settings);
    if (std::exchange(chosen_, chosen) == chosen)
        return;
    look_ = chosen;
    apply();
}

void LookControl::apply() {
    switch (look_) {
    case Look::light:
        theme_.setAppearance(Appearance::light);
        break;
    case Look::dark:
        theme_.setAppearance(Appearance::dark);
        break;
    case Look::system:
        theme_.setAppearance(ofDesktop_);
        break;
    }
}

} // namespace fennik::app
