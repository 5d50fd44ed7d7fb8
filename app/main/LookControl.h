#pragma once

#include "app/model/AppModel.h"
#include "app/model/Look.h"
#include "app/ui/Theme.h"

#include <QObject>

namespace fennik::app {

/// Gives the theme the look that the settings ask for, now and whenever they change. Lives on the
/// main thread.
class LookControl final : public QObject {
    Q_OBJECT

public:
    /// `asked` on the command line wins over the settings until another look is chosen there;
    /// `system` asks for nothing. Model and theme outlive this object.
    LookControl(Look asked, ui::Appearance ofDesktop, AppModel& app, ui::Theme& theme);

    /// Whether the colours are those of the desktop.
    bool followsDesktop() const { return look_ == Look::system; }
    /// The desktop has other colours now.
    void setDesktop(ui::Appearance ofDesktop);

private:
    void takeSettings();
    void apply();

    AppModel& app_;
    ui::Theme& theme_;
    ui::Appearance ofDesktop_;
    Look chosen_; ///< in the settings
    Look look_;   ///< in force
};

} // namespace fennik::app
