#include "core/archives/helper/ArchiveMessages.h"

#include "core/archives/EntryPath.h"
#include "core/base/DisplayText.h"
#include "core/base/Utf8.h"

#include <string_view>
#include <utility>

namespace fennik::ArchiveMessages {

namespace {

/// Longer texts of an archive are cut, so that its messages stay short. What is so long can be no
/// name on any disk, and is for the eye only.
constexpr std::size_t longestText = std::size_t{64} << 10;

void putCut(MessageWriter& message, std::string_view text) {
    message.text(text.substr(0, longestText));
}

void putUrl(MessageWriter& message, const FileUrl& url) {
    message.choice(url.hasDirectoryForm() ? FileUrl::Form::directory : FileUrl::Form::file);
    message.text(url.path());
}

FileUrl takeUrl(MessageReader& fields) {
    const auto form = fields.choice(FileUrl::Form::directory);
    auto path = fields.text();
    if (!path.starts_with('/')) {
        fields.spoil();
        return {};
    }
    return FileUrl(std::move(path), form);
}

void putDate(MessageWriter& message, Date date) {
    message.number(date.seconds);
    message.number(date.nanoseconds);
}

Date takeDate(MessageReader& fields) {
    constexpr std::uint32_t nanosecondsOfSecond = 1'000'000'000;
    const auto seconds = fields.number<std::int64_t>();
    const auto nanoseconds = fields.number<std::uint32_t>();
    if (nanoseconds >= nanosecondsOfSecond)
        fields.spoil();
    return {.seconds = seconds, .nanoseconds = nanoseconds};
}

template <class Value>
std::optional<Value> whole(const MessageReader& fields, Value&& value) {
    if (!fields.isWhole())
        return std::nullopt;
    return std::forward<Value>(value);
}

bool isSoundPath(std::string_view path, bool hasForeignName) {
    return isEntryPath(path) && (hasForeignName || Utf8::isValid(path));
}

bool isSound(const StreamEntry& met) {
    const auto& entry = met.entry;
    constexpr std::uint16_t modeBits = 07777;
    if (entry.size < 0 || (entry.mode & ~modeBits) != 0)
        return false;
    if (met.isRefused)
        return true;
    if (!isSoundPath(entry.path, met.hasForeignName))
        return false;
    if (entry.kind == ArchiveEntry::Kind::hardlink)
        return entry.linkTarget && isSoundPath(*entry.linkTarget, met.hasForeignName);
    return !entry.linkTarget || !entry.linkTarget->contains('\0');
}

} // namespace

void put(MessageWriter& message, const ArchiveRequest& request) {
    putUrl(message, request.url);
    message.text(request.password);
    message.text(request.charset);
    message.flag(request.wanted.has_value());
    if (!request.wanted)
        return;
    message.number(static_cast<std::uint32_t>(request.wanted->size()));
    for (const auto& path : *request.wanted)
        message.text(path);
}

std::optional<ArchiveRequest> archiveRequest(MessageReader fields) {
    ArchiveRequest request;
    request.url = takeUrl(fields);
    request.password = fields.text();
    request.charset = fields.text();
    if (fields.flag()) {
        request.wanted.emplace();
        for (auto count = fields.number<std::uint32_t>(); count > 0 && !fields.isSpoilt(); --count)
            request.wanted->push_back(fields.text());
    }
    return whole(fields, std::move(request));
}

void put(MessageWriter& message, const PackRequest& request) {
    message.number(static_cast<std::uint32_t>(request.sources.size()));
    for (const auto& source : request.sources)
        putUrl(message, source);
    putUrl(message, request.destination);
    message.choice(request.options.format);
    message.number(static_cast<std::int32_t>(request.options.level));
    message.text(request.options.password);
    message.flag(request.options.skipJunk);
}

std::optional<PackRequest> packRequest(MessageReader fields) {
    PackRequest request;
    for (auto count = fields.number<std::uint32_t>(); count > 0 && !fields.isSpoilt(); --count)
        request.sources.push_back(takeUrl(fields));
    request.destination = takeUrl(fields);
    request.options.format = fields.choice(allArchiveFormats.back());
    request.options.level = fields.number<std::int32_t>();
    request.options.password = fields.text();
    request.options.skipJunk = fields.flag();
    return whole(fields, std::move(request));
}

void put(MessageWriter& message, const ArchiveFacts& facts) {
    putCut(message, facts.formatName);
    message.number(facts.formatFamily);
    message.number(facts.fileSize);
    putDate(message, facts.fileModified);
}

std::optional<ArchiveFacts> facts(MessageReader fields) {
    ArchiveFacts facts;
    facts.formatName = displayText(fields.text());
    facts.formatFamily = fields.number<std::uint32_t>();
    facts.fileSize = fields.number<std::int64_t>();
    facts.fileModified = takeDate(fields);
    return whole(fields, std::move(facts));
}

void put(MessageWriter& message, const StreamEntry& met, FollowedBy followedBy) {
    const auto& entry = met.entry;
    putCut(message, entry.path);
    message.choice(entry.kind);
    message.number(entry.size);
    putDate(message, entry.modified);
    message.number(entry.mode);
    message.flag(entry.linkTarget.has_value());
    if (entry.linkTarget)
        putCut(message, *entry.linkTarget);
    message.flag(entry.encrypted);
    message.flag(met.hasForeignName);
    message.flag(met.declaresSize);
    message.flag(met.isSpecial);
    message.flag(met.isRefused);
    message.choice(followedBy);
}

std::optional<EntryMessage> entry(MessageReader fields) {
    EntryMessage met;
    auto& entry = met.entry.entry;
    entry.path = fields.text();
    entry.kind = fields.choice(ArchiveEntry::Kind::hardlink);
    entry.size = fields.number<std::int64_t>();
    entry.modified = takeDate(fields);
    entry.mode = fields.number<std::uint16_t>();
    if (fields.flag())
        entry.linkTarget = fields.text();
    entry.encrypted = fields.flag();
    met.entry.hasForeignName = fields.flag();
    met.entry.declaresSize = fields.flag();
    met.entry.isSpecial = fields.flag();
    met.entry.isRefused = fields.flag();
    met.followedBy = fields.choice(FollowedBy::data);
    if (!isSound(met.entry))
        return std::nullopt;
    return whole(fields, std::move(met));
}

void put(MessageWriter& message, const ArchiveError& error) {
    message.choice(error.kind);
    putCut(message, error.text);
    putCut(message, error.encryption);
}

std::optional<ArchiveError> error(MessageReader fields) {
    ArchiveError error;
    // The helper cancels nothing by itself.
    error.kind = fields.choice(ArchiveError::Case::wrongPassword);
    error.text = displayText(fields.text());
    error.encryption = displayText(fields.text());
    return whole(fields, std::move(error));
}

} // namespace fennik::ArchiveMessages
