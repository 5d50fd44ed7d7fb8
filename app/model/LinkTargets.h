#pragma once

#include "app/model/PanelServices.h"
#include "core/listing/FileItems.h"
#include "core/listing/FolderOpener.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace fennik::app {

/// Where a link leads.
struct LinkTarget {
    std::string path; ///< as it is written in the link, in bytes
    bool isBroken = false;
};

/// What is known of the links of one folder. They are read on workers, and only when somebody wants
/// to see them. Lives on the main thread.
class LinkTargets {
public:
    using NamedTargets = std::vector<std::pair<std::string, LinkTarget>>;

    /// `changed` is called when targets have become known, `foldersChanged` when `folders` has
    /// changed.
    LinkTargets(PanelServices services, std::function<void()> changed,
                std::function<void()> foldersChanged);

    /// The target of the link called `name`, once it is known.
    const LinkTarget* find(const std::string& name) const;
    /// The links to remote volumes that are known to lead to folders.
    const std::unordered_set<std::string>& folders() const { return folders_; }
    /// Finds out where these links of `folder` lead, each volume by itself. One that does not
    /// answer is asked only once.
    void follow(const FileUrl& folder, FolderOpener::RemoteLinks links);
    /// Asks for the links in these rows of `items`, the last excluded, that were not asked for yet.
    void want(const FileItems& items, std::size_t firstRow, std::size_t lastRow);
    /// The folder is another one now: nothing is known of its links.
    void forget();
    /// The folder was read again: what is known is shown until it has been asked for again, and
    /// answers to older questions are dropped.
    void askAgain();
    /// Of another folder, all is known in advance, and nothing is asked.
    void know(NamedTargets targets);
    /// Whether all questions have been answered, but for those to remote volumes.
    bool settled() const { return questions_ == 0; }

private:
    struct Known {
        std::optional<LinkTarget> target;
        bool asked = false;
    };
    struct Followed {
        std::string name;
        bool isBroken = false;
        bool isFolder = false;
    };
    void take(const std::shared_ptr<int>& reading, NamedTargets targets);
    void takeFollowed(const std::vector<Followed>& found);

    PanelServices services_;
    std::function<void()> changed_;
    std::function<void()> foldersChanged_;
    std::unordered_set<std::string> folders_;
    std::unordered_set<std::string> brokenRemotes_;
    std::unordered_set<std::string> followed_; ///< mount points that have not answered yet
    std::unordered_map<std::string, Known> links_;
    int questions_ = 0;                                      ///< not yet answered
    std::shared_ptr<int> reading_ = std::make_shared<int>(); ///< the newest reading of the folder
    std::shared_ptr<int> folder_ = std::make_shared<int>();  ///< gone when that is another one
    std::shared_ptr<int> life_ = std::make_shared<int>();    ///< gone with this object
};

} // namespace fennik::app
