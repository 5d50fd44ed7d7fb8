#pragma once

#include "core/operations/NameClash.h"
#include "core/operations/TransferLedger.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace fennik {

/// Gives new items their names: settles with the user what happens where one is taken, and brings
/// back what gave way to an item that was not made after all.
class NamePlacing {
public:
    enum class Made {
        done,
        taken,  ///< something has the name, and nothing was made
        failed, ///< the ledger has been told why, and nothing is left
        stopped,
    };
    /// Makes the item under a name that must be free.
    using Make = std::function<Made(const FolderNode::Held& folder, const std::string& name)>;
    enum class Outcome {
        made,
        merged, ///< a folder of that name is there
        skipped,
        failed,
        stopped,
    };
    struct Placed {
        Outcome outcome = Outcome::failed;
        std::string name = {}; ///< the one it got
    };
    enum class Clash {
        ask,
        number, ///< it gets the next free name
    };
    struct Item {
        FolderNode::Pointer folder = {}; ///< that is to hold it
        std::string name = {};
        bool isFolder = false;
        Clash clash = Clash::ask;
        /// What the user is told of it.
        std::function<NameClash::Newcomer()> newcomer = {};
    };
    /// Completes what has its name already, before what has a name is looked at.
    using Complete = std::function<void()>;
    /// Told of a folder that has given way to another item, and lies in the trash now.
    using OnDisplaced = std::function<void(const FileIdentity& folder)>;

    NamePlacing(TransferLedger& ledger, NameClash::Objection objection, Complete complete,
                OnDisplaced onDisplaced)
        : ledger_(ledger),
          objection_(std::move(objection)),
          complete_(std::move(complete)),
          onDisplaced_(std::move(onDisplaced)) {}

    Placed place(const Item& item, const Make& make);

private:
    struct Attempt {
        std::string name = {};
        bool numbers = false;
        NameClash::Occupant occupant = {};
        /// Where the occupant lies now.
        std::optional<FileUrl> displaced = {};
    };
    /// What is done about a name that is taken; none: try again.
    std::optional<Outcome> settle(const Item& item, Attempt& attempt);

    TransferLedger& ledger_;
    NameClash::Objection objection_;
    Complete complete_;
    OnDisplaced onDisplaced_;
};

} // namespace fennik
