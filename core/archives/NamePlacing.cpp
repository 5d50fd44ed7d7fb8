#include "core/archives/NamePlacing.h"

#include "core/base/CzechText.h"
#include "core/operations/UniqueName.h"

#include <cerrno>

namespace fennik {

namespace {

/// How often a name may turn out to be taken although it seemed free, before that is a failure.
constexpr int mostSurprises = 100;

} // namespace

NamePlacing::Placed NamePlacing::place(const Item& item, const Make& make) {
    Attempt attempt{.name = item.name};
    const auto fail = [&](const PosixError& error) {
        ledger_.failed(quoted(item.name) + ": " + error.reason());
        return Placed{Outcome::failed};
    };
    for (int surprises = 0; surprises < mostSurprises; ++surprises) {
        if (surprises > 0 && ledger_.context().checkpoint() == Checkpoint::stop)
            return {Outcome::stopped};
        const auto folder = item.folder->open();
        if (!folder)
            return fail(folder.error());
        if (attempt.numbers)
            attempt.name = UniqueName::free(item.name, **folder);
        switch (const auto made = make(*folder, attempt.name)) {
        case Made::done:
            return {Outcome::made, std::move(attempt.name)};
        case Made::failed:
        case Made::stopped:
            if (attempt.displaced)
                NameClash::bringBack(ledger_, attempt.occupant, *attempt.displaced);
            return {made == Made::failed ? Outcome::failed : Outcome::stopped};
        case Made::taken:
            break;
        }
        if (const auto outcome = settle(item, attempt))
            return {*outcome, std::move(attempt.name)};
    }
    return fail(PosixError{EEXIST});
}

std::optional<NamePlacing::Outcome> NamePlacing::settle(const Item& item, Attempt& attempt) {
    // What was displaced stays in the trash, as its place belongs to another one now.
    attempt.displaced.reset();
    complete_();
    const auto folder = item.folder->open();
    const auto there = folder ? (*folder)->status(attempt.name) : std::unexpected(folder.error());
    if (!there && there.error().code == ENOENT)
        return std::nullopt;
    if (!there) {
        ledger_.failed(quoted(item.name) + ": " + there.error().reason());
        return Outcome::failed;
    }
    if (item.isFolder && there->type == FileType::directory)
        return Outcome::merged;
    if (item.clash == Clash::number || attempt.numbers) {
        attempt.numbers = true;
        return std::nullopt;
    }
    attempt.occupant = {item.folder, attempt.name, *there};
    auto settled = NameClash::settle(ledger_, item.newcomer(), attempt.occupant, objection_);
    switch (settled.answer) {
    case NameClash::Answer::free:
        attempt.displaced = std::move(settled.displaced);
        if (attempt.displaced && there->type == FileType::directory)
            onDisplaced_(there->identity());
        return std::nullopt;
    case NameClash::Answer::number:
        attempt.numbers = true;
        return std::nullopt;
    case NameClash::Answer::lookAgain:
        return std::nullopt;
    case NameClash::Answer::skip:
        return Outcome::skipped;
    case NameClash::Answer::cancelled:
        return Outcome::stopped;
    case NameClash::Answer::failed:
        break;
    }
    return Outcome::failed;
}

} // namespace fennik
