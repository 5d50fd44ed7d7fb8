#pragma once

#include "app/model/PreviewContent.h"

#include <cstddef>
#include <optional>
#include <span>

/// What the first bytes of a file tell. Safe on any thread.
namespace fennik::app::FileHead {

/// So much of a text is shown, and looked at for everything else.
constexpr std::size_t longest = std::size_t{256} << 10;
/// So much is shown of what is no text.
constexpr std::size_t longestBytes = std::size_t{4} << 10;

/// What the file has to be decoded as, by the signs that its format begins with.
std::optional<DecodedKind> decodedKind(std::span<const std::byte> head);

/// The text, or the bytes where it is none. `isCut`: the file goes on.
PreviewContent content(std::span<const std::byte> head, bool isCut);

} // namespace fennik::app::FileHead
