#pragma once

#include "app/commands/KeyDispatcher.h"
#include "app/commands/ShortcutStore.h"
#include "app/model/AppModel.h"
#include "core/base/CzechText.h"
#include "tests/support/AppFixture.h"

#include <chrono>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace fennik::test {

/// The program without its window: keys go in, state and files come out. Both panels begin in the
/// empty home folder.
class Scenario : public AppFixture {
protected:
    /// Starts the program, a second time in place of the first one. What the first one was about to
    /// do at that moment never happens.
    void start(const std::optional<std::string>& left = {},
               const std::optional<std::string>& right = {}) {
        program_.reset();
        disk.runAll();
        main.runAll();
        program_ = std::make_unique<Program>(appServices(), home(), store);
        app().settings().registerDefaults();
        app().start(left, right);
        settle();
    }
    void startAt(std::string_view left, std::string_view right) {
        start(temp.path(left), temp.path(right));
    }
    /// Ends the program in order, and starts it again.
    void restart() {
        app().saveNow();
        start();
    }

    app::AppModel& app() { return program_->app; }
    app::ShortcutStore& shortcuts() { return program_->shortcuts; }
    app::PanelModel& active() { return app().activePanel(); }
    app::PanelModel& other() { return app().otherPanel(); }

    /// Presses a combination in the active panel, and does not wait for what comes of it.
    void pressOnly(std::string_view combo) {
        EXPECT_TRUE(program_->keys.handle(KeyCombo::parse(combo), app().activeSide())) << combo;
    }
    void press(std::string_view combo) {
        pressOnly(combo);
        settle();
    }
    void moveTo(std::string_view name) {
        const auto row = active().items().rowOf(name);
        ASSERT_TRUE(row) << name;
        active().setCursor(static_cast<std::ptrdiff_t>(*row));
    }

    static std::string underCursor(const app::PanelModel& panel) {
        const auto item = panel.cursorItem();
        return item ? std::string(item->name) : "";
    }
    std::string underCursor() { return underCursor(active()); }
    std::string path() { return active().tab().path; }
    std::vector<std::string> names() { return namesOf(active().items()); }
    std::set<std::string> marked() {
        const auto& names = active().marks().marked();
        return {names.begin(), names.end()};
    }
    std::vector<std::string> tabPaths(app::PanelSide side) {
        std::vector<std::string> paths;
        for (const auto& tab : app().panel(side).tabs())
            paths.push_back(tab.path);
        return paths;
    }
    std::string toast() { return app().toast() ? app().toast()->text : ""; }
    /// The text of the toast on show, which is then gone.
    std::string takeToast() {
        auto text = toast();
        timers.pass(std::chrono::seconds(3));
        EXPECT_FALSE(app().toast());
        return text;
    }

private:
    struct Program {
        Program(app::AppServices services, FileUrl home, MemorySettings& store)
            : app(services, std::move(home)),
              shortcuts(
                  app::KActions::defaultMapOffTheMac(), [] { return std::nullopt; },
                  [&store](std::string map) {
                      store.setValue(app::ShortcutStore::settingsKey, std::move(map));
                  }) {}

        app::AppModel app;
        app::ShortcutStore shortcuts;
        app::KeyDispatcher keys{app, shortcuts};
    };
    std::unique_ptr<Program> program_;
};

} // namespace fennik::test
