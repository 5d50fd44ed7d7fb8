#include "app/model/PathSuggestions.h"

#include <chrono>
#include <utility>

namespace fennik::app {

namespace {

/// Keys that follow each other faster are answered together.
constexpr auto typingPause = std::chrono::milliseconds(30);

} // namespace

PathSuggestions::PathSuggestions(PanelServices services, FileUrl home,
                                 std::function<void()> changed)
    : services_(std::move(services)),
      home_(std::move(home)),
      changed_(std::move(changed)),
      question_(services_.delayed) {}

void PathSuggestions::ask(std::string typed, FileUrl base, PathCompleter::IncludeHidden hidden) {
    life_ = std::make_shared<int>();
    question_.schedule(typingPause,
                       [this, typed = std::move(typed), base = std::move(base), hidden]() mutable {
                           auto path = PathCompleter::normalise(typed, base, home_);
                           auto work = [services = services_, typed = std::move(typed),
                                        base = std::move(base), home = home_, hidden] {
                               return PathCompleter::suggestions(services.files, typed, base, home,
                                                                 hidden, services.volumes);
                           };
                           runThen(services_.disk, services_.main, std::move(path), life_,
                                   std::move(work), [this](std::vector<std::string> found) {
                                       found_ = std::move(found);
                                       changed_();
                                   });
                       });
}

void PathSuggestions::clear() {
    question_.cancel();
    life_ = std::make_shared<int>();
    found_.clear();
}

} // namespace fennik::app
