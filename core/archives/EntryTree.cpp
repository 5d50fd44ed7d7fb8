#include "core/archives/EntryTree.h"

#include "core/archives/EntryPath.h"
#include "core/base/Utf8.h"
#include "core/operations/ClampedSum.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <ranges>
#include <utility>

namespace fennik {

namespace {

/// Far more than archives have that people make. A million entries take some 100 MiB; this much is
/// about 1 GiB.
constexpr std::size_t mostNodes = 8'000'000;
constexpr std::size_t mostText = std::size_t{256} << 20U;
static_assert(5 * longestDecodedPath <= TextStore::longest);
constexpr std::size_t leastSlots = 1024; // a power of two, as all later numbers of them
constexpr std::uint16_t implicitMode = 0755;

std::uint32_t hashOf(std::uint32_t parent, std::string_view name) {
    constexpr std::uint64_t golden = 0x9E37'79B9'7F4A'7C15U;
    const auto hash = (std::hash<std::string_view>{}(name) ^ parent) * golden;
    return static_cast<std::uint32_t>(hash >> 32U);
}

/// Splits the first component off `path`.
std::string_view takeComponent(std::string_view& path) {
    const auto length = std::min(path.find('/'), path.size());
    const auto component = path.substr(0, length);
    path.remove_prefix(std::min(length + 1, path.size()));
    return component;
}

} // namespace

EntryTree::EntryTree() : slots_(leastSlots) {}

EntryTree::Index EntryTree::keepLinkTarget(std::string target) {
    linkTargetBytes_ += target.size();
    linkTargets_.push_back(std::move(target));
    return static_cast<Index>(linkTargets_.size() - 1);
}

/// Where the node is, or where it would go.
std::size_t EntryTree::slotOf(std::uint32_t hash, Index parent, std::string_view name) const {
    const auto mask = slots_.size() - 1;
    for (auto slot = hash & mask;; slot = (slot + 1) & mask) {
        const auto& [slotHash, node] = slots_[slot];
        if (node == none)
            return slot;
        if (slotHash == hash && nodes_[node].parent == parent && nameOf(nodes_[node]) == name)
            return slot;
    }
}

void EntryTree::resizeSlots(std::size_t size) {
    const auto before = std::exchange(slots_, std::vector<Slot>(size));
    const auto mask = slots_.size() - 1;
    for (const auto& each : before) {
        if (each.node == none)
            continue;
        auto slot = each.hash & mask;
        while (slots_[slot].node != none)
            slot = (slot + 1) & mask;
        slots_[slot] = each;
    }
}

EntryTree::Index EntryTree::folderIn(Index parent, std::string_view name) {
    if (folders_ > slots_.size() / 2)
        resizeSlots(2 * slots_.size());
    const auto hash = hashOf(parent, name);
    auto& slot = slots_[slotOf(hash, parent, name)];
    if (slot.node == none) {
        slot = {hash, static_cast<Index>(nodes_.size())};
        nodes_.push_back({.name = names_.keep(name), .parent = parent});
        ++folders_;
    }
    return slot.node;
}

EntryTree::Index EntryTree::folderAt(std::string_view path) {
    if (path == lastFolder_)
        return lastFolderNode_;
    Index node = 0;
    for (auto rest = path; !rest.empty();)
        node = folderIn(node, takeComponent(rest));
    lastFolder_ = path;
    return lastFolderNode_ = node;
}

bool EntryTree::add(const ArchiveEntry& entry) {
    if (nodes_.size() > mostNodes || names_.size() + linkTargetBytes_ > mostText ||
        entry.path.size() > longestDecodedPath)
        return false;
    hasEncryptedEntries_ = hasEncryptedEntries_ || entry.encrypted;
    const Record record{.size = entry.kind == ArchiveEntry::Kind::file ? entry.size : 0,
                        .modified = entry.modified,
                        .linkTarget = entry.linkTarget ? keepLinkTarget(*entry.linkTarget) : none,
                        .mode = entry.mode,
                        .kind = entry.kind,
                        .encrypted = entry.encrypted,
                        .implicit = false};
    const std::string_view path = entry.path;
    if (entry.kind == ArchiveEntry::Kind::directory) {
        nodes_[folderAt(path)].record = record;
        return true;
    }
    const auto slash = path.rfind('/');
    const bool isAtRoot = slash == std::string_view::npos;
    const auto parent = folderAt(isAtRoot ? std::string_view() : path.substr(0, slash));
    const auto name = names_.keep(isAtRoot ? path : path.substr(slash + 1));
    nodes_.push_back({.record = record, .name = name, .parent = parent});
    return true;
}

std::vector<std::string_view> EntryTree::foreignNames() const {
    std::vector<std::string_view> names;
    const auto collect = [&names](std::string_view name) {
        if (!Utf8::isValid(name))
            names.push_back(name);
    };
    for (const auto& node : nodes_)
        collect(nameOf(node));
    for (std::string_view target : linkTargets_)
        while (!target.empty())
            collect(takeComponent(target));
    return names;
}

EntryTree EntryTree::decoded(const NameCharset& charset) const {
    EntryTree result;
    std::vector<Index> places(nodes_.size());
    for (std::size_t i = 1; i < nodes_.size(); ++i) {
        const auto& node = nodes_[i];
        const auto parent = places[node.parent];
        const auto name = charset.decoded(nameOf(node));
        auto record = node.record;
        if (record.linkTarget != none)
            record.linkTarget =
                result.keepLinkTarget(charset.decoded(linkTargets_[record.linkTarget]));
        if (record.kind != ArchiveEntry::Kind::directory) {
            result.nodes_.push_back(
                {.record = record, .name = result.names_.keep(name), .parent = parent});
            continue;
        }
        places[i] = result.folderIn(parent, name);
        if (!record.implicit)
            result.nodes_[places[i]].record = record;
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
    for (std::size_t i = 1; i < nodes_.size(); ++i) {
        auto& node = nodes_[i];
        if (node.record.kind == ArchiveEntry::Kind::directory)
            continue;
        const auto name = nameOf(node);
        const auto hash = hashOf(node.parent, name);
        auto& slot = slots_[slotOf(hash, node.parent, name)];
        if (slot.node == none) {
            slot = {hash, static_cast<Index>(i)};
            continue;
        }
        auto& same = nodes_[slot.node].record;
        if (same.kind != ArchiveEntry::Kind::directory)
            same = node.record;
        node = {};
    }
}

void EntryTree::linkChildren() {
    for (std::size_t i = 1; i < nodes_.size(); ++i)
        if (const auto parent = nodes_[i].parent; parent != none)
            nodes_[i].previousSibling =
                std::exchange(nodes_[parent].lastChild, static_cast<Index>(i));
}

void EntryTree::addUp(Date modified) {
    for (auto& node : nodes_ | std::views::reverse) {
        auto& record = node.record;
        if (record.implicit) {
            record.modified = modified;
            record.mode = implicitMode;
        }
        if (record.kind == ArchiveEntry::Kind::file)
            ++fileCount_;
        if (node.parent != none)
            addClamped(nodes_[node.parent].record.size, record.size);
    }
}

std::optional<EntryTree::Index> EntryTree::nodeAt(std::string_view path) const {
    if (path.ends_with('/'))
        return std::nullopt;
    Index node = 0;
    for (auto rest = path; !rest.empty();) {
        const auto name = takeComponent(rest);
        node = slots_[slotOf(hashOf(node, name), node, name)].node;
        if (node == none)
            return std::nullopt;
    }
    return node;
}

std::optional<ArchiveEntry> EntryTree::find(std::string_view path) const {
    const auto index = nodeAt(path);
    if (!index || *index == 0)
        return std::nullopt;
    const auto& record = nodes_[*index].record;
    const bool isFile = record.kind == ArchiveEntry::Kind::file;
    ArchiveEntry entry{.path = std::string(path),
                       .kind = record.kind,
                       .size = isFile ? record.size : 0,
                       .modified = record.modified,
                       .mode = record.mode,
                       .encrypted = record.encrypted,
                       .implicit = record.implicit};
    if (record.linkTarget != none)
        entry.linkTarget = linkTargets_[record.linkTarget];
    return entry;
}

std::vector<std::string_view> EntryTree::children(std::string_view folder) const {
    std::vector<std::string_view> names;
    if (const auto index = nodeAt(folder))
        for (auto child = nodes_[*index].lastChild; child != none;
             child = nodes_[child].previousSibling)
            names.push_back(nameOf(nodes_[child]));
    std::ranges::reverse(names);
    return names;
}

std::int64_t EntryTree::folderSize(std::string_view folder) const {
    const auto index = nodeAt(folder);
    const bool isFolder = index && nodes_[*index].record.kind == ArchiveEntry::Kind::directory;
    return isFolder ? nodes_[*index].record.size : 0;
}

} // namespace fennik
