#include "core/archives/EntryTree.h"

#include "core/archives/EntryPath.h"
#include "core/base/Utf8.h"
#include "core/operations/ClampedSum.h"

#include <algorithm>
#include <array>
#include <bit>
#include <functional>
#include <utility>

namespace fennik {

namespace {

/// Far more than archives have that people make. A million entries take some 70 MiB.
constexpr std::size_t mostNodes = 8'000'000;
constexpr std::size_t mostText = std::size_t{256} << 20U;
static_assert(5 * longestDecodedPath <= TextStore::longest);
constexpr std::size_t leastSlots = 1024;             // a power of two, as all later numbers of them
constexpr std::uint32_t indexBits = (1U << 23U) - 1; // of a slot; the others are those of the hash
static_assert(mostNodes + mostEntryFolders < indexBits);
constexpr std::uint16_t implicitMode = 0755;

std::uint32_t hashOf(std::uint32_t parent, std::string_view name) {
    constexpr std::uint64_t golden = 0x9E37'79B9'7F4A'7C15U;
    const auto hash = (std::hash<std::string_view>{}(name) ^ parent) * golden;
    return static_cast<std::uint32_t>(hash >> 32U);
}

std::uint32_t slotFor(std::uint32_t hash, std::uint32_t index) {
    return (hash & ~indexBits) | index;
}

/// Splits the first component off `path`.
std::string_view takeComponent(std::string_view& path) {
    const auto length = std::min(path.find('/'), path.size());
    const auto component = path.substr(0, length);
    path.remove_prefix(std::min(length + 1, path.size()));
    return component;
}

} // namespace

EntryTree::EntryTree() : slots_(leastSlots, none) {
    nodes_.push_back({});
}

EntryTree::Index EntryTree::keepLinkTarget(std::string target) {
    linkTargetBytes_ += target.size();
    linkTargets_.push_back(std::move(target));
    return static_cast<Index>(linkTargets_.size() - 1);
}

/// Where the node is, or where it would go.
std::size_t EntryTree::slotOf(std::uint32_t hash, Index parent, std::string_view name) const {
    const auto mask = slots_.size() - 1;
    for (auto place = hash & mask;; place = (place + 1) & mask) {
        const auto slot = slots_[place];
        if (slot == none)
            return place;
        const auto index = slot & indexBits;
        if (slot == slotFor(hash, index) && nodes_[index].parent == parent &&
            nameOf(nodes_[index]) == name)
            return place;
    }
}

void EntryTree::resizeSlots(std::size_t size) {
    const auto before = std::exchange(slots_, std::vector<Index>(size, none));
    const auto mask = size - 1;
    for (const auto slot : before) {
        if (slot == none)
            continue;
        const auto index = slot & indexBits;
        const auto hash = hashOf(nodes_[index].parent, nameOf(nodes_[index]));
        auto place = hash & mask;
        while (slots_[place] != none)
            place = (place + 1) & mask;
        slots_[place] = slot;
    }
}

EntryTree::Index EntryTree::folderIn(Index parent, std::string_view name) {
    if (folders_ > slots_.size() / 2)
        resizeSlots(2 * slots_.size());
    const auto hash = hashOf(parent, name);
    auto& slot = slots_[slotOf(hash, parent, name)];
    if (slot == none) {
        slot = slotFor(hash, static_cast<Index>(nodes_.size()));
        nodes_.push_back({.name = names_.keep(name), .parent = parent});
        ++folders_;
    }
    return slot & indexBits;
}

EntryTree::Index EntryTree::folderAt(std::string_view path) {
    Index node = 0;
    for (auto rest = path; !rest.empty();)
        node = folderIn(node, takeComponent(rest));
    lastFolder_ = path;
    if (!path.empty())
        lastFolder_ += '/';
    return lastFolderNode_ = node;
}

/// Leaves the name of an entry, of its whole path.
EntryTree::Index EntryTree::takeFolder(std::string_view& path) {
    const bool mayBeLast = path.starts_with(lastFolder_);
    if (mayBeLast && !path.substr(lastFolder_.size()).contains('/')) {
        path.remove_prefix(lastFolder_.size());
        return lastFolderNode_;
    }
    const auto nameBegin = path.rfind('/') + 1;
    const auto folder = path.substr(0, nameBegin == 0 ? 0 : nameBegin - 1);
    path.remove_prefix(nameBegin);
    return folderAt(folder);
}

bool EntryTree::add(const ArchiveEntry& entry) {
    if (nodes_.size() > mostNodes || names_.size() + linkTargetBytes_ > mostText ||
        entry.path.size() > longestDecodedPath)
        return false;
    hasEncryptedEntries_ = hasEncryptedEntries_ || entry.encrypted;
    Node node{.size = entry.kind == ArchiveEntry::Kind::file ? entry.size : 0,
              .seconds = entry.modified.seconds,
              .nanoseconds = entry.modified.nanoseconds,
              .mode = entry.mode,
              .kind = entry.kind,
              .encrypted = entry.encrypted,
              .implicit = false};
    if (isFolder(node)) {
        auto& folder = nodes_[folderAt(entry.path)];
        node.name = folder.name;
        node.parent = folder.parent;
        folder = node;
        return true;
    }
    std::string_view name = entry.path;
    node.parent = takeFolder(name);
    node.name = names_.keep(name);
    if (entry.linkTarget)
        node.below = keepLinkTarget(*entry.linkTarget);
    nodes_.push_back(node);
    return true;
}

std::vector<std::string_view> EntryTree::foreignNames() const {
    std::vector<std::string_view> names;
    const auto collect = [&names](std::string_view name) {
        if (!Utf8::isValid(name))
            names.push_back(name);
    };
    for (std::size_t i = 0; i < nodes_.size(); ++i)
        collect(nameOf(nodes_[i]));
    for (std::size_t i = 0; i < linkTargets_.size(); ++i)
        for (std::string_view target = linkTargets_[i]; !target.empty();)
            collect(takeComponent(target));
    return names;
}

EntryTree EntryTree::decoded(const NameCharset& charset) const {
    EntryTree result;
    std::vector<Index> places(nodes_.size());
    for (std::size_t i = 1; i < nodes_.size(); ++i) {
        auto node = nodes_[i];
        const auto name = charset.decoded(nameOf(node));
        node.parent = places[node.parent];
        if (isFolder(node)) {
            places[i] = result.folderIn(node.parent, name);
            auto& folder = result.nodes_[places[i]];
            node.name = folder.name;
            if (!node.implicit)
                folder = node;
            continue;
        }
        node.name = result.names_.keep(name);
        if (node.below != none)
            node.below = result.keepLinkTarget(charset.decoded(linkTargets_[node.below]));
        result.nodes_.push_back(node);
    }
    result.hasEncryptedEntries_ = hasEncryptedEntries_;
    return result;
}

void EntryTree::finish(Date modified) {
    joinSamePaths();
    linkChildren();
    addUp(modified);
}

void EntryTree::joinSamePaths() {
    resizeSlots(std::max(slots_.size(), std::bit_ceil(2 * nodes_.size())));
    // Slots lie anywhere in memory, so they are sent for some nodes ahead.
    constexpr std::size_t ahead = 16;
    std::array<std::uint32_t, ahead> hashes{};
    for (std::size_t i = 1; i < nodes_.size() + ahead; ++i) {
        auto& hash = hashes.at(i % ahead);
        if (i > ahead)
            joinWithSame(static_cast<Index>(i - ahead), hash);
        if (i >= nodes_.size())
            continue;
        hash = hashOf(nodes_[i].parent, nameOf(nodes_[i]));
        __builtin_prefetch(&slots_[hash & (slots_.size() - 1)]);
    }
}

void EntryTree::joinWithSame(Index index, std::uint32_t hash) {
    auto& node = nodes_[index];
    if (isFolder(node))
        return;
    auto& slot = slots_[slotOf(hash, node.parent, nameOf(node))];
    if (slot == none) {
        slot = slotFor(hash, index);
        return;
    }
    auto& same = nodes_[slot & indexBits];
    if (!isFolder(same))
        same = node;
    node = {};
}

void EntryTree::linkChildren() {
    for (std::size_t i = 1; i < nodes_.size(); ++i)
        if (const auto parent = nodes_[i].parent; parent != none)
            nodes_[i].previousSibling = std::exchange(nodes_[parent].below, static_cast<Index>(i));
}

void EntryTree::addUp(Date modified) {
    for (auto i = nodes_.size(); i-- > 0;) {
        auto& node = nodes_[i];
        if (node.implicit) {
            node.seconds = modified.seconds;
            node.nanoseconds = modified.nanoseconds;
            node.mode = implicitMode;
        }
        if (node.kind == ArchiveEntry::Kind::file)
            ++fileCount_;
        if (node.parent != none)
            addClamped(nodes_[node.parent].size, node.size);
    }
}

std::optional<EntryTree::Index> EntryTree::nodeAt(std::string_view path) const {
    if (path.ends_with('/'))
        return std::nullopt;
    Index node = 0;
    for (auto rest = path; !rest.empty();) {
        const auto name = takeComponent(rest);
        const auto slot = slots_[slotOf(hashOf(node, name), node, name)];
        if (slot == none)
            return std::nullopt;
        node = slot & indexBits;
    }
    return node;
}

std::optional<ArchiveEntry> EntryTree::find(std::string_view path) const {
    const auto index = nodeAt(path);
    if (!index || *index == 0)
        return std::nullopt;
    const auto& node = nodes_[*index];
    ArchiveEntry entry{.path = std::string(path),
                       .kind = node.kind,
                       .size = isFolder(node) ? 0 : node.size,
                       .modified = {node.seconds, node.nanoseconds},
                       .mode = node.mode,
                       .encrypted = node.encrypted,
                       .implicit = node.implicit};
    if (!isFolder(node) && node.below != none)
        entry.linkTarget = linkTargets_[node.below];
    return entry;
}

std::vector<std::string_view> EntryTree::children(std::string_view folder) const {
    std::vector<std::string_view> names;
    const auto index = nodeAt(folder);
    if (!index || !isFolder(nodes_[*index]))
        return names;
    for (auto child = nodes_[*index].below; child != none; child = nodes_[child].previousSibling)
        names.push_back(nameOf(nodes_[child]));
    std::ranges::reverse(names);
    return names;
}

std::int64_t EntryTree::folderSize(std::string_view folder) const {
    const auto index = nodeAt(folder);
    return index && isFolder(nodes_[*index]) ? nodes_[*index].size : 0;
}

} // namespace fennik
