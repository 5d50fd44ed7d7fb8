#pragma once

#include "core/archives/EntryStream.h"
#include "core/archives/PackOptions.h"
#include "core/helper/Message.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace fennik {

/// What Fennik and its helper say to each other about archives.
enum class MessageKind : std::uint32_t {
    // To the helper, at first.
    readArchive,
    packArchive,
    // What it answers to `readArchive`, and sends on by itself.
    facts,
    entry,
    data,       ///< of the last entry
    dataEnd,    ///< of the last entry
    dataFailed, ///< the rest of the last entry cannot be read
    failed,     ///< to open, or to come to the next entry; the last message
    end,        ///< of the archive; the last message
    // What it answers to `packArchive`: the calls of an `OperationContext` in their order.
    totals,
    currentName,
    bytesWritten,
    bytesAccounted,
    filesDone,
    error,
    failure,
    created,
    checkpoint, ///< answered with `goOn` or `stop`
    packed,     ///< the last message
    // Answers to `checkpoint`.
    goOn,
    stop,
};

/// What the helper is to pack.
struct PackRequest {
    std::vector<FileUrl> sources = {};
    FileUrl destination = {};
    PackOptions options = {};
};

enum class FollowedBy : std::uint8_t { nothing, data };
/// An entry, and what comes behind it.
struct EntryMessage {
    StreamEntry entry = {};
    FollowedBy followedBy = FollowedBy::nothing;
};

/// Fields of messages. What is read is none where the message is not whole, or says what cannot be.
namespace ArchiveMessages {

void put(MessageWriter& message, const ArchiveRequest& request);
void put(MessageWriter& message, const PackRequest& request);
void put(MessageWriter& message, const ArchiveFacts& facts);
void put(MessageWriter& message, const StreamEntry& met, FollowedBy followedBy);
void put(MessageWriter& message, const ArchiveError& error);

std::optional<ArchiveRequest> archiveRequest(MessageReader fields);
std::optional<PackRequest> packRequest(MessageReader fields);
std::optional<ArchiveFacts> facts(MessageReader fields);
/// Paths of entries that are not refused are as `ArchiveEntry` says, whoever has sent them.
std::optional<EntryMessage> entry(MessageReader fields);
std::optional<ArchiveError> error(MessageReader fields);

} // namespace ArchiveMessages

} // namespace fennik
