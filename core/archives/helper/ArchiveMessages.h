#pragma once

#include "core/archives/EntryStream.h"
#include "core/archives/PackOptions.h"
#include "core/archives/helper/Message.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace fennik {

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
