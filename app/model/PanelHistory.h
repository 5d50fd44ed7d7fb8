#pragma once

#include "core/base/Uuid.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace fennik::app {

/// The folders that a panel's tabs have left, for going back and forward. It is told of a step only
/// once the new folder has been listed.
class PanelHistory {
public:
    /// Of each tab and direction; then the oldest step is forgotten.
    static constexpr std::size_t mostSteps = 1000;

    enum class Step {
        stay,     ///< the same folder again
        navigate, ///< to a folder of the user's choice
        back,
        forward,
    };

    /// Records that `tab` went from `left` to `reached` by `step`. A step back or forward is used
    /// up even where it led to the same folder.
    void record(const Uuid& tab, Step step, const std::string& left, const std::string& reached);

    /// Where the step would lead; none when it leads nowhere.
    std::optional<std::string> target(const Uuid& tab, Step step) const;

    /// The tab is closed.
    void forget(const Uuid& tab);

private:
    using Stacks = std::map<Uuid, std::vector<std::string>>;
    Stacks backStack_;
    Stacks forwardStack_;
};

} // namespace fennik::app
