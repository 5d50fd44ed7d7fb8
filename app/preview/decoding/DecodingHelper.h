#pragma once

#include "app/preview/PreviewMessages.h"

#include <QFile>

#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>

namespace fennik::app {

/// What a file came to, or why it came to nothing.
using Decoding = std::expected<Decoded, DecodingFailure>;

/// What a helper does its work with, and how much it may use.
struct DecodingWork {
    /// Decodes the open file, from its beginning.
    std::function<Decoding(DecodedKind kind, int descriptor)> decode;
    /// Besides what it uses at its start.
    std::int64_t memory = std::int64_t{2} << 30;
    std::chrono::seconds processorTime{6};
};

/// The whole life of a process that decodes one file for another one, which has started it as a
/// `HelperProcess`. Returns its exit code.
int runDecodingHelper();
/// The same with other means.
int runDecodingHelper(const DecodingWork& work);

} // namespace fennik::app
