#include "app/model/OutcomePreview.h"

#include <chrono>
#include <utility>

namespace fennik::app {

namespace {

constexpr auto typingPause = std::chrono::milliseconds(120);

} // namespace

OutcomePreview::OutcomePreview(const PanelServices& services, std::function<void()> changed)
    : services_(services), changed_(std::move(changed)), question_(services.delayed) {}

void OutcomePreview::ask(When when, std::string path, Find find) {
    // What was wrong with the last text need not be wrong with this one.
    if (outcome_.kind == Outcome::Kind::refused)
        set({.freeSpace = outcome_.freeSpace});
    life_ = std::make_shared<int>();
    question_.schedule(typingPause, [this, path = std::move(path), find = std::move(find)] {
        runThen(services_.disk, services_.main, path, life_, find,
                [this](Outcome found) { set(std::move(found)); });
    });
    if (when == When::now)
        question_.runNow();
}

void OutcomePreview::set(Outcome outcome) {
    question_.cancel();
    life_ = std::make_shared<int>();
    if (outcome == outcome_)
        return;
    outcome_ = std::move(outcome);
    changed_();
}

} // namespace fennik::app
