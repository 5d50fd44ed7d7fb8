#pragma once

#include "core/helper/Message.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace fennik {

/// How a helper's process ends.
namespace HelperExit {
constexpr int done = 0;
constexpr int noHelper = 2; ///< it was started by hand
constexpr int outOfMemory = 3;
constexpr int abandoned = 4; ///< nobody listens any more
} // namespace HelperExit

/// The helper's side of a `HelperProcess`.
namespace HelperSide {

/// The open file that the helper was given.
constexpr int descriptor = 3;

struct Request {
    std::uint32_t kind = 0;
    std::vector<std::byte> fields = {};
};

/// Waits for what the helper is to do; none where it ends before it was told.
std::optional<Request> takeRequest();

} // namespace HelperSide

} // namespace fennik
