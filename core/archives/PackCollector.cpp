#include "core/archives/PackCollector.h"

#include "core/archives/EntryPath.h"
#include "core/base/CzechText.h"
#include "core/base/Utf8.h"
#include "core/operations/ClampedSum.h"
#include "core/platform/UnfinishedFile.h"

#include <algorithm>
#include <cerrno>
#include <functional>
#include <utility>

namespace fennik {

namespace {

bool isJunk(std::string_view name) {
    return name == ".DS_Store" || name == "__MACOSX" || name == "Icon\r" || name.starts_with("._");
}

/// Readers take this for a separator, as the format forbids it.
bool isTakenApart(ArchiveFormat format, std::string_view name) {
    return format == ArchiveFormat::zip && name.contains('\\');
}

bool isNoName(std::string_view name) {
    return name.empty() || name == "." || name == ".." || name == "/";
}

} // namespace

bool canHold(ArchiveFormat format, std::string_view text) {
    const bool keepsBytes = format != ArchiveFormat::zip && format != ArchiveFormat::sevenZip;
    return keepsBytes || Utf8::isValid(text);
}

std::string unreadable(std::string_view name, const PosixError& error) {
    const auto reason = error.code == ESTALE ? "mezitím ho nahradilo něco jiného" : error.reason();
    return quoted(name) + " nejde přečíst: " + reason;
}

std::string unpackable(std::string_view name) {
    return quoted(name) + " nejde zabalit: není to soubor ani složka.";
}

PackItem PackItems::operator[](std::size_t index) const {
    const auto& record = records_[index];
    const auto& folder = folders_[record.folder];
    const auto begin = index == 0 ? 0 : records_[index - 1].nameEnd;
    auto name = names_.substr(begin, record.nameEnd - begin);
    auto path = folder.path + name;
    return {.folder = folder.node,
            .name = std::move(name),
            .path = std::move(path),
            .type = record.type,
            .size = record.size,
            .modified = {record.seconds, record.nanoseconds},
            .mode = record.mode,
            .identity = record.identity};
}

std::optional<PackItems> PackCollector::collect(const std::vector<FileUrl>& sources) {
    for (const auto& source : sources)
        if (!collectSource(source))
            return std::nullopt;
    return std::move(items_);
}

bool PackCollector::collectSource(const FileUrl& source) {
    const std::string name(source.lastComponent());
    if (isNoName(name))
        return fail(quoted(name) + " nejde zabalit: formát takový název neumí.");
    auto parent = source.parent();
    if (parent != lastFolder_) {
        auto node = FolderNode::at(folders_, parent);
        if (!node)
            return fail(unreadable(name, node.error()));
        lastFolderIndex_ = static_cast<std::uint32_t>(items_.folders_.size());
        items_.folders_.push_back({.node = std::move(*node), .path = {}, .depth = 0});
        lastFolder_ = std::move(parent);
    }
    if (!topNames_.insert(name).second)
        return fail(quoted(name) + " nejde zabalit: dvě položky by měly stejný název.");
    if (!visit(lastFolderIndex_, name))
        return false;
    while (!levels_.empty()) {
        auto& level = levels_.back();
        if (level.names.empty()) {
            levels_.pop_back();
            continue;
        }
        const auto next = std::move(level.names.back());
        level.names.pop_back();
        if (!visit(level.folder, next))
            return false;
    }
    return true;
}

bool PackCollector::visit(std::uint32_t folder, const std::string& name) {
    if (context_.checkpoint() == Checkpoint::stop)
        return false;
    if (isLeftOut(name))
        return true;
    const auto held = items_.folders_[folder].node->open();
    const auto status = held ? (*held)->status(name) : std::unexpected(held.error());
    if (!status)
        return fail(unreadable(name, status.error()));
    if (containsArchive(*status))
        return fail("Archiv nemůže přepsat soubor, který se do něj balí.");
    if (status->type == FileType::regular && UnfinishedFile::isName(name))
        return true;
    if (status->type == FileType::other) {
        context_.addError(unpackable(name));
        return true;
    }
    return add(folder, name, *status) &&
           (status->type != FileType::directory || enter(folder, name));
}

bool PackCollector::add(std::uint32_t folder, const std::string& name, const FileStatus& status) {
    const auto& above = items_.folders_[folder];
    if (!canHold(options_.format, name) || isTakenApart(options_.format, name))
        return fail(quoted(name) + " nejde zabalit: formát takový název neumí.");
    // Otherwise it could not be taken out again.
    if (above.path.size() + name.size() > longestEntryPath || above.depth > mostEntryFolders)
        return fail(quoted(name) + " nejde zabalit: cesta k němu je příliš dlouhá.");
    const auto size = status.type == FileType::regular ? status.size : 0;
    items_.names_ += name;
    items_.records_.push_back({.nameEnd = items_.names_.size(),
                               .size = size,
                               .seconds = status.modified.seconds,
                               .identity = status.identity(),
                               .nanoseconds = status.modified.nanoseconds,
                               .folder = folder,
                               .mode = status.mode,
                               .type = status.type});
    addClamped(items_.bytes_, size);
    return true;
}

bool PackCollector::enter(std::uint32_t folder, const std::string& name) {
    const auto& above = items_.folders_[folder];
    auto node = FolderNode::below(above.node, name);
    const auto held = node ? (*node)->open() : std::unexpected(node.error());
    auto entries = held ? (*held)->entries() : std::unexpected(held.error());
    if (!entries)
        return fail(unreadable(name, entries.error()));
    Level level{.folder = static_cast<std::uint32_t>(items_.folders_.size())};
    for (auto& entry : *entries)
        level.names.push_back(std::move(entry.name));
    std::ranges::sort(level.names, std::greater{});
    levels_.push_back(std::move(level));
    items_.folders_.push_back(
        {.node = std::move(*node), .path = above.path + name + "/", .depth = above.depth + 1});
    return true;
}

bool PackCollector::isLeftOut(std::string_view name) const {
    return options_.skipJunk && isJunk(name);
}

bool PackCollector::containsArchive(const FileStatus& status) const {
    return status.identity() == place_.archive ||
           (status.type == FileType::directory && place_.folder->isInOrIs(status.identity()));
}

bool PackCollector::fail(std::string sentence) {
    context_.fail(std::move(sentence));
    return false;
}

} // namespace fennik
