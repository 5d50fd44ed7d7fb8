#pragma once

#include "app/commands/KeyDispatcher.h"
#include "app/commands/ShortcutStore.h"
#include "app/model/AppModel.h"
#include "core/base/CzechText.h"
#include "tests/support/AppFixture.h"
#include "tests/support/DiskTree.h"

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
    ~Scenario() override { end(); }

    /// Starts the program, a second time in place of the first one. What the first one was about to
    /// do at that moment never happens.
    void start(const std::optional<std::string>& left = {},
               const std::optional<std::string>& right = {}) {
        end();
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
    /// As closing the window does.
    void end() {
        if (!program_)
            return;
        app().stopJobs();
        EXPECT_TRUE(jobsAreOver());
        program_.reset();
    }
    /// Ends the program in order, and starts it again.
    void restart() {
        app().saveNow();
        start();
    }

    /// Until nothing is left to do, or the user has to decide.
    void settle() {
        AppFixture::settle();
        const auto over = afterJobs();
        while (!*over && clash() == nullptr && password() == nullptr) {
            ASSERT_TRUE(main.await()) << "the jobs do not end";
            AppFixture::settle();
        }
    }
    /// Until the panels show what is on the disk.
    void settleAll() {
        settle();
        // In steps: what takes long is read again only after a longer pause.
        for (int step = 0; step < 10; ++step) {
            timers.pass(std::chrono::milliseconds(100));
            settle();
        }
    }
    /// The clash that waits for the user.
    std::shared_ptr<app::PendingConflict> clash() {
        const auto& dialog = app().dialog();
        const auto* shown = dialog ? std::get_if<app::ConflictDialog>(&*dialog) : nullptr;
        return shown != nullptr && !shown->pending->isAnswered() ? shown->pending : nullptr;
    }

    /// The password that a worker waits for.
    std::shared_ptr<app::PendingPassword> password() {
        const auto& dialog = app().dialog();
        const auto* shown = dialog ? std::get_if<app::PasswordDialog>(&*dialog) : nullptr;
        return shown != nullptr && !shown->pending->isAnswered() ? shown->pending : nullptr;
    }

    template <class T>
    const T& dialog() {
        return std::get<T>(app().dialog().value());
    }
    /// Of a file in the test's own folder.
    std::string content(std::string_view name) { return contentOf(temp.path(name)); }

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
    void mark(const std::vector<std::string>& names) {
        for (const auto& name : names)
            active().toggleMark(active().items().rowOf(name).value());
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
    /// Becomes true on the main thread when all jobs of this moment have ended.
    std::shared_ptr<bool> afterJobs() {
        auto over = std::make_shared<bool>(false);
        transfers.execute([over, &executor = main] { executor.execute([over] { *over = true; }); });
        return over;
    }
    bool jobsAreOver() {
        const auto over = afterJobs();
        while (!*over && main.await())
            main.runAll();
        return *over;
    }

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
