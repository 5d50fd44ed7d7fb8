#pragma once

#include "app/model/ports/PreviewDecoder.h"
#include "core/helper/Message.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace fennik::app {

/// What Fennik and its decoding helper say to each other.
enum class PreviewMessage : std::uint32_t {
    decode, ///< to the helper: what the file is to be decoded as
    // What it answers.
    picture, ///< all of a picture but its pixels
    pixels,  ///< more of them
    media,   ///< the last message
    failed,  ///< the last message
};

/// Why a file was not decoded.
enum class DecodingFailure : std::uint8_t {
    unsupported, ///< a format that is not known here
    damaged,
    tooLarge,
    locked, ///< with a password
};

/// Fields of messages. What is read is none where the message is not whole, or says what cannot be.
namespace PreviewMessages {

/// So many of the pixels go into one message.
constexpr std::size_t largestPiece = std::size_t{128} << 10;

void put(MessageWriter& message, const DecodedPicture& picture);
void put(MessageWriter& message, const DecodedMedia& media);

std::optional<DecodedKind> kind(MessageReader fields);
/// Without its pixels.
std::optional<DecodedPicture> picture(MessageReader fields);
/// Texts in it are for the eye, whatever was sent.
std::optional<DecodedMedia> media(MessageReader fields);
std::optional<DecodingFailure> failure(MessageReader fields);

} // namespace PreviewMessages

} // namespace fennik::app
