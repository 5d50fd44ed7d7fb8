#include "core/helper/HelperProcess.h"

#include "core/helper/HelperSide.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>

namespace fennik {

namespace {

/// How long a cancellation may go unnoticed.
constexpr std::chrono::milliseconds patience(20);
/// How long a helper may take to end that has closed its output, or was killed.
constexpr std::chrono::milliseconds lastPatience(1000);

} // namespace

HelperProcess::HelperProcess(ChildProcess child)
    : child_(std::move(child)), buffer_(sizeof(MessageHead) + longestMessage) {}

std::expected<HelperProcess, PosixError> HelperProcess::start(const std::string& program,
                                                              std::string_view option,
                                                              int descriptor,
                                                              Variables environment) {
    auto child = ChildProcess::start({.program = program,
                                      .arguments = {std::string(option)},
                                      .environment = std::move(environment),
                                      .descriptor = descriptor});
    if (!child)
        return std::unexpected(child.error());
    return HelperProcess(std::move(*child));
}

HelperProcess::Result<void> HelperProcess::send(const MessageWriter& messages,
                                                const IsCancelled& isCancelled) {
    if (loss_)
        return std::unexpected(*loss_);
    auto left = messages.bytes();
    while (!left.empty()) {
        if (isCancelled())
            return loseOver(HelperLoss::cancelled);
        const auto written = child_.write(left, patience);
        if (written)
            left = left.subspan(*written);
        else if (written.error().code != EAGAIN)
            return loseToItsEnd();
    }
    return {};
}

HelperProcess::Result<HelperMessage<std::uint32_t>>
HelperProcess::receiveNumbered(const IsCancelled& isCancelled) {
    MessageHead head;
    if (const auto filled = fill(sizeof head, isCancelled); !filled)
        return std::unexpected(filled.error());
    std::memcpy(&head, &buffer_[begin_], sizeof head);
    if (head.size > longestMessage)
        return loseOver(HelperLoss::nonsense);
    if (const auto filled = fill(sizeof head + head.size, isCancelled); !filled)
        return std::unexpected(filled.error());
    const auto fields =
        std::span<const std::byte>(buffer_).subspan(begin_ + sizeof head, head.size);
    begin_ += sizeof head + head.size;
    return HelperMessage<std::uint32_t>{.kind = head.kind, .fields = fields};
}

/// Sees to it that so many bytes, at most as many as the buffer holds, lie there from `begin_` on.
HelperProcess::Result<void> HelperProcess::fill(std::size_t size, const IsCancelled& isCancelled) {
    if (loss_)
        return std::unexpected(*loss_);
    if (begin_ + size > buffer_.size()) {
        std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
                  buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
        end_ -= begin_;
        begin_ = 0;
    }
    while (end_ - begin_ < size) {
        if (isCancelled())
            return loseOver(HelperLoss::cancelled);
        const auto count = child_.read(std::span(buffer_).subspan(end_), patience);
        if (count && *count > 0)
            end_ += *count;
        else if (count || count.error().code != EAGAIN)
            return loseToItsEnd();
    }
    return {};
}

std::unexpected<HelperLoss> HelperProcess::loseOver(HelperLoss loss) {
    child_.kill();
    child_.wait(lastPatience);
    loss_ = loss;
    return std::unexpected(loss);
}

std::unexpected<HelperLoss> HelperProcess::loseToItsEnd() {
    const auto ending = child_.wait(lastPatience);
    if (ending && ending->signal == SIGXCPU)
        return loseOver(HelperLoss::outOfTime);
    if (ending && ending->exitCode == HelperExit::outOfMemory)
        return loseOver(HelperLoss::outOfMemory);
    return loseOver(HelperLoss::crashed);
}

} // namespace fennik
