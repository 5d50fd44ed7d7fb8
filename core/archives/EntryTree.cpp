#include "core/archives/EntryTree.h"

#include "core/base/Utf8.h"
#include "core/operations/ClampedSum.h"

#include <algorithm>
#include <functional>
#include <ranges>
#include <utility>

namespace fennik {

namespace {

/// Far more than archives have that people make. A million entries take some 100 MiB; this much is
/// about 1 GiB.
constexpr std::size_t mostNodes = 8'000'000;
constexpr std::size_t mostText = std::size_t{512} << 20U;
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

EntryTree::EntryTree() : nodes_(1), slots_(leastSlots) {}

std::string_view EntryTree::view(Text text) const {
    return std::string_view(texts_).substr(text.offset, text.length);
}

EntryTree::Text EntryTree::keep(std::string_view text) {
    const Text kept{static_cast<std::uint32_t>(texts_.size()),
                    static_cast<std::uint32_t>(text.size())};
    texts_ += text;
    return kept;
}

/// Where the node is, or where it would go.
std::size_t EntryTree::slotOf(std::uint32_t hash, Index parent, std::string_view name) const {
    const auto mask = slots_.size() - 1;
    for (auto slot = hash & mask;; slot = (slot + 1) & mask) {
        const auto& [slotHash, node] = slots_[slot];
        if (node == none)
            return slot;
        if (slotHash == hash && nodes_[node].parent == parent && view(nodes_[node].name) == name)
            return slot;
    }
}

void EntryTree::growSlots() {
    const auto before = std::exchange(slots_, std::vector<Slot>(2 * slots_.size()));
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

EntryTree::Index EntryTree::childOf(Index parent, std::string_view name) {
    const auto hash = hashOf(parent, name);
    auto slot = slotOf(hash, parent, name);
    if (slots_[slot].node != none)
        return slots_[slot].node;
    if (nodes_.size() > slots_.size() / 2) {
        growSlots();
        slot = slotOf(hash, parent, name);
    }
    const auto child = static_cast<Index>(nodes_.size());
    slots_[slot] = {hash, child};
    makeFolder(parent);
    const auto previousSibling = std::exchange(nodes_[parent].lastChild, child);
    nodes_.push_back({.name = keep(name), .parent = parent, .previousSibling = previousSibling});
    return child;
}

/// What has been a file or a link until something was met below it.
void EntryTree::makeFolder(Index index) {
    auto& node = nodes_[index];
    if (node.record.kind == ArchiveEntry::Kind::directory)
        return;
    node = {.name = node.name, .parent = node.parent, .previousSibling = node.previousSibling};
}

EntryTree::Index EntryTree::folderAt(std::string_view path) {
    if (path == lastFolder_)
        return lastFolderNode_;
    Index node = 0;
    for (auto rest = path; !rest.empty();)
        node = childOf(node, takeComponent(rest));
    lastFolder_ = path;
    return lastFolderNode_ = node;
}

void EntryTree::record(Index index, const Record& record) {
    auto& node = nodes_[index];
    if (node.lastChild != none && record.kind != ArchiveEntry::Kind::directory)
        return;
    node.record = record;
}

bool EntryTree::add(const ArchiveEntry& entry) {
    if (nodes_.size() > mostNodes || texts_.size() > mostText)
        return false;
    const std::string_view path = entry.path;
    const auto slash = path.rfind('/');
    const auto nameBegin = slash == std::string_view::npos ? 0 : slash + 1;
    const auto folder = folderAt(path.substr(0, nameBegin == 0 ? 0 : slash));
    const auto index = childOf(folder, path.substr(nameBegin));
    const bool isFile = entry.kind == ArchiveEntry::Kind::file;
    record(index, {.size = isFile ? entry.size : 0,
                   .modified = entry.modified,
                   .linkTarget = entry.linkTarget ? keep(*entry.linkTarget) : Text{},
                   .mode = entry.mode,
                   .kind = entry.kind,
                   .hasLinkTarget = entry.linkTarget.has_value(),
                   .encrypted = entry.encrypted,
                   .implicit = false});
    hasEncryptedEntries_ = hasEncryptedEntries_ || entry.encrypted;
    return true;
}

std::vector<std::string_view> EntryTree::foreignNames() const {
    std::vector<std::string_view> names;
    const auto collect = [&names](std::string_view name) {
        if (!Utf8::isValid(name))
            names.push_back(name);
    };
    for (const auto& node : nodes_) {
        collect(view(node.name));
        for (auto rest = view(node.record.linkTarget); !rest.empty();)
            collect(takeComponent(rest));
    }
    return names;
}

EntryTree EntryTree::decoded(const NameCharset& charset) const {
    EntryTree result;
    std::vector<Index> places(nodes_.size());
    for (std::size_t i = 1; i < nodes_.size(); ++i) {
        const auto& node = nodes_[i];
        places[i] = result.childOf(places[node.parent], charset.decoded(view(node.name)));
        if (node.record.implicit)
            continue;
        auto record = node.record;
        if (record.hasLinkTarget)
            record.linkTarget = result.keep(charset.decoded(view(record.linkTarget)));
        result.record(places[i], record);
    }
    result.hasEncryptedEntries_ = hasEncryptedEntries_;
    return result;
}

void EntryTree::finish(Date modified) {
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
    if (record.hasLinkTarget)
        entry.linkTarget = view(record.linkTarget);
    return entry;
}

std::vector<std::string_view> EntryTree::children(std::string_view folder) const {
    std::vector<std::string_view> names;
    if (const auto index = nodeAt(folder))
        for (auto child = nodes_[*index].lastChild; child != none;
             child = nodes_[child].previousSibling)
            names.push_back(view(nodes_[child].name));
    std::ranges::reverse(names);
    return names;
}

std::int64_t EntryTree::folderSize(std::string_view folder) const {
    const auto index = nodeAt(folder);
    const bool isFolder = index && nodes_[*index].record.kind == ArchiveEntry::Kind::directory;
    return isFolder ? nodes_[*index].record.size : 0;
}

} // namespace fennik
