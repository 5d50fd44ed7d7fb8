#pragma once

#include "core/archives/ArchiveEntry.h"
#include "core/archives/NameCharset.h"
#include "core/archives/PieceList.h"
#include "core/archives/TextStore.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fennik {

/// Entries of an archive by their paths: one node for each item and folder, which keeps no more of
/// its path than its own name. Some seventy bytes an entry. At first entries are only added, which
/// is cheap; after `finish` they are only looked up.
class EntryTree {
public:
    EntryTree();

    /// Of several entries with one path the last one counts, but what is a folder to any of them,
    /// or has something below it, is a folder. False: there are more than memory is spent on.
    bool add(const ArchiveEntry& entry);
    /// Names and link targets that are not UTF-8, each without the folder it lies in.
    std::vector<std::string_view> foreignNames() const;
    /// The same tree with all names decoded.
    EntryTree decoded(const NameCharset& charset) const;
    /// To be called once, after the last entry. `modified` is for folders without one.
    void finish(Date modified);

    std::optional<ArchiveEntry> find(std::string_view path) const;
    std::vector<std::string_view> children(std::string_view folder) const;
    std::int64_t folderSize(std::string_view folder) const;
    std::int64_t fileCount() const { return fileCount_; }
    bool hasEncryptedEntries() const { return hasEncryptedEntries_; }

private:
    using Index = std::uint32_t;
    static constexpr Index none = ~Index{0};

    /// Unless set, a folder without an entry. Small, as there is one for every entry.
    struct Node {
        std::int64_t size = 0;    ///< of a folder: of all files below, once the tree is finished
        std::int64_t seconds = 0; ///< of the date, as are the nanoseconds
        std::uint32_t nanoseconds = 0;
        TextStore::Place name = {};
        Index parent = none; ///< also where another node stands for the same path
        Index previousSibling = none;
        Index below = none; ///< of a folder its last child, of a link its target
        std::uint16_t mode = 0;
        ArchiveEntry::Kind kind = ArchiveEntry::Kind::directory;
        bool encrypted : 1 = false;
        bool implicit : 1 = true;
    };
    static_assert(sizeof(Node) == 40);

    static bool isFolder(const Node& node) { return node.kind == ArchiveEntry::Kind::directory; }
    std::string_view nameOf(const Node& node) const { return names_.at(node.name); }
    Index keepLinkTarget(std::string target);
    std::size_t slotOf(std::uint32_t hash, Index parent, std::string_view name) const;
    void resizeSlots(std::size_t size);
    Index folderIn(Index parent, std::string_view name);
    Index folderAt(std::string_view path);
    Index takeFolder(std::string_view& path);
    void joinSamePaths();
    void joinWithSame(Index index, std::uint32_t hash);
    void linkChildren();
    void addUp(Date modified);
    std::optional<Index> nodeAt(std::string_view path) const;

    PieceList<Node> nodes_; ///< parents before their children; the first one is the root
    TextStore names_;
    PieceList<std::string> linkTargets_;
    std::size_t linkTargetBytes_ = 0;
    /// A hash table of the nodes by parent and name: of the folders, in the end of all. Beside the
    /// index there is room for a part of the hash, by which most others need no look at their node.
    std::vector<Index> slots_;
    std::size_t folders_ = 1;
    std::string lastFolder_; ///< with "/" behind it
    Index lastFolderNode_ = 0;
    std::int64_t fileCount_ = 0;
    bool hasEncryptedEntries_ = false;
};

} // namespace fennik
