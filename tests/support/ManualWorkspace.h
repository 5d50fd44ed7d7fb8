#pragma once

#include "app/model/ports/Workspace.h"

#include <string>
#include <utility>
#include <vector>

namespace fennik::test {

/// A desktop that notes what it is asked for, as words, and answers by `answerAll`.
class ManualWorkspace final : public app::Workspace {
public:
    void open(const FileUrl& file, Done done) override {
        note("open " + file.path(), std::move(done));
    }
    void edit(const FileUrl& file, const std::string& application, Done done) override {
        note("edit " + file.path() + " with '" + application + "'", std::move(done));
    }
    void openTerminal(const Terminal& terminal, Done done) override {
        const bool isIterm = terminal.app == Terminal::App::iterm;
        note(std::string(isIterm ? "iterm" : "terminal") + " in " + terminal.folder.path(),
             std::move(done));
    }
    void reveal(const std::vector<FileUrl>& items, Done done) override {
        std::string text = "reveal";
        for (const auto& item : items)
            text += " " + item.path();
        note(text, std::move(done));
    }
    void notify(const Notification& notification) override {
        asked.push_back("notify " + notification.title + ": " + notification.text);
    }
    void setSleep(Sleep sleep) override { isAwake = sleep == Sleep::heldOff; }

    /// What it was asked for since the last time.
    std::vector<std::string> takeAsked() { return std::exchange(asked, {}); }
    void answerAll(const std::expected<void, std::string>& result) {
        for (auto& done : std::exchange(waiting, {}))
            done(result);
    }

    std::vector<std::string> asked;
    std::vector<Done> waiting;
    bool isAwake = false;

private:
    void note(std::string text, Done done) {
        asked.push_back(std::move(text));
        waiting.push_back(std::move(done));
    }
};

} // namespace fennik::test
