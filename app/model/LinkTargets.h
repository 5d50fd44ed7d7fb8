#pragma once

#include "app/model/PanelServices.h"
#include "core/listing/FileItems.h"
#include "core/listing/FolderOpener.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace fennik::app {

/// Where a link leads.
struct LinkTarget {
    std::string path; ///< as it is written in the link, in bytes
    bool isBroken = false;
    bool isRemote = false; ///< on a volume that may not answer, and so followed by itself
};

/// What is known of the links of one folder. They are read on workers, and only when somebody wants
/// to see them. Lives on the main thread.
class LinkTargets {
public:
    using NamedTargets = std::vector<std::pair<std::string, LinkTarget>>;

    /// `changed` is called when targets have become known, `foldersChanged` when links were taken
    /// for what they are not.
    LinkTargets(PanelServices services, std::function<void()> changed,
                std::function<void()> foldersChanged);

    /// The target of the link called `name`, once it is known.
    const LinkTarget* find(const std::string& name) const;
    /// The remote links that were followed, in whatever folder.
    const FolderOpener::KnownLinks& known() const { return known_; }
    /// The folder was read, and these links were not followed. Finds out where they lead: each
    /// volume is asked by itself, and nothing more as long as it has not answered.
    void follow(const FileUrl& folder, FolderOpener::RemoteLinks remote);
    /// Whether nobody knows yet if the link leads to a folder.
    bool isPending(std::string_view name) const;
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
    using Links = std::vector<FolderOpener::RemoteLink>;
    /// What a volume was asked.
    struct Question {
        FileUrl folder;
        Links links;
        std::optional<Links> newer = {}; ///< since then a folder was read: its links to the volume

        /// Of the folder that was read last.
        const Links& current() const { return newer ? *newer : links; }
    };
    struct Answer {
        bool isBroken = false;
        bool isFolder = false;
    };
    void take(const std::shared_ptr<int>& reading, NamedTargets targets);
    void ask(const std::string& volume, Links links);
    void takeAnswers(const std::string& volume, const std::vector<Answer>& answers);

    PanelServices services_;
    std::function<void()> changed_;
    std::function<void()> foldersChanged_;
    FileUrl folder_; ///< that was read last
    FolderOpener::KnownLinks known_;
    std::unordered_set<std::string> broken_;  ///< of `known_`
    std::map<std::string, Question> pending_; ///< by the mount point
    std::unordered_map<std::string, Known> links_;
    int questions_ = 0;                                      ///< not yet answered
    std::shared_ptr<int> reading_ = std::make_shared<int>(); ///< the newest reading of the folder
    std::shared_ptr<int> life_ = std::make_shared<int>();    ///< gone with this object
};

} // namespace fennik::app
