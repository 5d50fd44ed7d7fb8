#pragma once

#include "core/helper/Message.h"
#include "core/platform/ChildProcess.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace fennik {

/// Why the helper says no more.
enum class HelperLoss {
    cancelled,
    outOfTime,   ///< it has used the processor for too long without coming any further
    outOfMemory, ///< it wanted more than it may have
    crashed,     ///< it has ended before it was done, whatever the reason
    nonsense,    ///< what it sent is no message that can stand there
};

/// What a helper says.
template <class Kind>
struct HelperMessage {
    Kind kind = {};                         ///< maybe none that there is
    std::span<const std::byte> fields = {}; ///< valid until the next call
};

/// Fennik's side of a helper: starts it, and talks to it without trusting it. Used on one thread at
/// a time. Ends the helper at its own end.
class HelperProcess {
public:
    template <class T>
    using Result = std::expected<T, HelperLoss>;
    using Variables = std::vector<std::pair<std::string, std::string>>;

    using IsCancelled = std::function<bool()>;

    /// `program` is a helper when `option` is its only argument; `descriptor` and `environment` as
    /// in `ChildProcess::Start`.
    static std::expected<HelperProcess, PosixError> start(const std::string& program,
                                                          std::string_view option, int descriptor,
                                                          Variables environment = {});

    /// Waits until the helper has taken it.
    Result<void> send(const MessageWriter& messages, const IsCancelled& isCancelled);
    /// Waits for the next message. After a failure the helper has ended, and the failure stays.
    template <class Kind>
    Result<HelperMessage<Kind>> receive(const IsCancelled& isCancelled) {
        const auto message = receiveNumbered(isCancelled);
        if (!message)
            return std::unexpected(message.error());
        return HelperMessage<Kind>{static_cast<Kind>(message->kind), message->fields};
    }
    /// Ends the helper, for this reason.
    std::unexpected<HelperLoss> loseOver(HelperLoss loss);

private:
    explicit HelperProcess(ChildProcess child);
    Result<HelperMessage<std::uint32_t>> receiveNumbered(const IsCancelled& isCancelled);
    Result<void> fill(std::size_t size, const IsCancelled& isCancelled);
    std::unexpected<HelperLoss> loseToItsEnd();

    ChildProcess child_;
    std::optional<HelperLoss> loss_ = {};
    std::vector<std::byte> buffer_;
    std::size_t begin_ = 0; ///< of what was received and not yet given out
    std::size_t end_ = 0;
};

} // namespace fennik
