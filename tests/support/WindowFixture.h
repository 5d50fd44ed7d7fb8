#pragma once

#include "app/commands/ShortcutStore.h"
#include "app/model/ports/KeyboardLayout.h"
#include "app/ui/MainWindow.h"
#include "tests/support/AppFixture.h"

#include <chrono>
#include <optional>
#include <string>

namespace fennik::test {

/// No keyboard is known here, so that a key types what the toolkit says.
class UnknownLayout final : public app::KeyboardLayout {
public:
    std::optional<std::string> character(const app::PressedKey&) override { return std::nullopt; }
};

/// The window of a whole application, in light colours. Whatever a test has set going ends with it.
class WindowFixture : public AppFixture {
protected:
    ~WindowFixture() override {
        app.stopJobs();
        transfers.shutDown(std::chrono::seconds(5));
    }

    ui::Theme theme{ui::Appearance::light};
    ui::Icons icons{theme};
    app::AppModel app{appServices(), home()};
    app::ShortcutStore shortcuts{app::KActions::defaultMapOffTheMac(), [] { return std::nullopt; },
                                 [](const std::string&) {}};
    UnknownLayout layout;
    ui::MainWindow window{{app, shortcuts, theme, icons}, layout};
};

} // namespace fennik::test
