#pragma once

#include "core/archives/ArchiveIndex.h"
#include "core/archives/FullDisk.h"
#include "core/archives/NamePlacing.h"
#include "core/operations/FolderNode.h"
#include "core/operations/TransferLedger.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace fennik {

/// The folders of an archive on their way to the target: each is made when something in it comes,
/// or is the one that was there, and is then reached through those above it alone.
class ExtractionFolders {
public:
    enum class State {
        open,
        skipped, ///< with all below it
        failed,
        stopped, ///< the job was
    };
    struct Folder {
        FolderNode::Pointer node = {}; ///< where it is open
        State state = State::failed;
        bool isNew = false;
        /// What a new one gets once nothing more comes into it.
        std::optional<ArchiveEntry> look = {};
        std::map<std::string, Folder*, std::less<>> children = {};
    };
    /// What the user is told of the folder with this path.
    using Newcomer = std::function<NameClash::Newcomer(const std::string& path)>;

    /// `index` may be missing; all else outlives this.
    ExtractionFolders(TransferLedger& ledger, FullDisk& disk, NamePlacing& placing,
                      const ArchiveIndex* index, FolderNode::Pointer root, Newcomer newcomer);

    /// Puts everything into a folder of its own in the target, which may be there already, and gets
    /// another name where something else has this one. Before anything is entered. False after a
    /// failure, of which the ledger has been told.
    bool beginIn(const std::string& name);
    /// The folder of the archive with this path, of which `base` bytes are left out below the
    /// target; "" is its root.
    Folder& enter(std::string_view path, std::size_t base);
    /// The nearest of the folders on this path that is known already.
    const Folder& nearest(std::string_view path, std::size_t base) const;
    /// This folder of the disk has gone elsewhere, and is none of the archive's any more.
    void forget(const FileIdentity& folder);
    /// Gives new folders their modes and times. Nothing is to be made in them any more.
    void finish();

private:
    Folder& child(Folder& parent, std::string_view name, std::string_view path,
                  NamePlacing::Clash clash = NamePlacing::Clash::ask);
    NamePlacing::Made make(Folder& folder, const FolderNode::Pointer& parent,
                           const OpenFolder& held, const std::string& name);

    TransferLedger& ledger_;
    FullDisk& disk_;
    NamePlacing& placing_;
    const ArchiveIndex* index_;
    Newcomer newcomer_;
    std::deque<Folder> folders_ = {}; ///< in the order in which they were met
    Folder* top_ = nullptr;           ///< the root of the archive
    std::string lastPath_ = {};       ///< without its base
    Folder* last_ = nullptr;
};

} // namespace fennik
