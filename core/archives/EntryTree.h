#pragma once

#include "core/archives/ArchiveEntry.h"
#include "core/archives/NameCharset.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fennik {

/// Entries of an archive by their paths: one node for each item and folder, which keeps no more of
/// its path than its own name. Some hundred bytes an entry.
class EntryTree {
public:
    EntryTree();

    /// A path that is there already is taken over by the later entry, but a folder in which
    /// something lies stays one. False: there are more than memory is spent on.
    bool add(const ArchiveEntry& entry);
    /// Names and link targets that are not UTF-8, each without the folder it lies in.
    std::vector<std::string_view> foreignNames() const;
    /// The same tree with all names decoded.
    EntryTree decoded(const NameCharset& charset) const;
    /// Adds the sizes up; `modified` is for folders without an entry. To be called once, after the
    /// last entry.
    void finish(Date modified);

    std::optional<ArchiveEntry> find(std::string_view path) const;
    /// In the order in which they came.
    std::vector<std::string_view> children(std::string_view folder) const;
    std::int64_t folderSize(std::string_view folder) const;
    std::int64_t fileCount() const { return fileCount_; }
    bool hasEncryptedEntries() const { return hasEncryptedEntries_; }

private:
    using Index = std::uint32_t;
    static constexpr Index none = ~Index{0};

    /// A piece of `texts_`.
    struct Text {
        std::uint32_t offset = 0;
        std::uint32_t length = 0;
    };
    /// What an entry says of its item; at first that of a folder without an entry.
    struct Record {
        std::int64_t size = 0; ///< of a folder: of all files below, once the tree is finished
        Date modified = {};
        Text linkTarget = {};
        std::uint16_t mode = 0;
        ArchiveEntry::Kind kind = ArchiveEntry::Kind::directory;
        bool hasLinkTarget = false;
        bool encrypted = false;
        bool implicit = true;
    };
    struct Node {
        Record record = {};
        Text name = {};
        Index parent = none;
        Index lastChild = none;
        Index previousSibling = none;
    };
    struct Slot {
        std::uint32_t hash = 0;
        Index node = none;
    };

    std::string_view view(Text text) const;
    Text keep(std::string_view text);
    std::size_t slotOf(std::uint32_t hash, Index parent, std::string_view name) const;
    void growSlots();
    Index childOf(Index parent, std::string_view name);
    void makeFolder(Index index);
    Index folderAt(std::string_view path);
    void record(Index index, const Record& record);
    std::optional<Index> nodeAt(std::string_view path) const;

    std::vector<Node> nodes_; ///< parents before their children; the first one is the root
    std::string texts_;
    std::vector<Slot> slots_; ///< a hash table of all nodes, by parent and name
    std::string lastFolder_;
    Index lastFolderNode_ = 0;
    std::int64_t fileCount_ = 0;
    bool hasEncryptedEntries_ = false;
};

} // namespace fennik
