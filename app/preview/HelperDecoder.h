#pragma once

#include "app/model/ports/PreviewDecoder.h"
#include "core/platform/OwnProcess.h"

#include <chrono>
#include <string>

namespace fennik::app {

/// The only argument of a program that is to be a helper.
constexpr std::string_view decodingHelperOption = "--preview-helper";

/// Decodes each file in a process of its own, which may hang, crash or ask for all the memory there
/// is: the file is then damaged. Safe on any thread.
class HelperDecoder final : public PreviewDecoder {
public:
    /// `program` calls `runDecodingHelper` when its argument is `decodingHelperOption`; after
    /// `patience` it is given up.
    explicit HelperDecoder(std::string program = OwnProcess::programBeside("fennik-preview"),
                           std::chrono::milliseconds patience = std::chrono::seconds(6));

    std::expected<Decoded, std::string>
    decode(DecodedKind kind, int descriptor,
           const std::function<bool()>& isCancelled) const override;

private:
    std::string program_;
    std::chrono::milliseconds patience_;
};

} // namespace fennik::app
