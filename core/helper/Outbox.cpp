#include "core/helper/Outbox.h"

#include "core/platform/OwnProcess.h"

namespace fennik {

bool Outbox::isFull() const {
    constexpr std::size_t enough = std::size_t{64} << 10;
    return messages_.bytes().size() >= enough;
}

bool Outbox::send() {
    const bool isHeard = OwnProcess::writeAll(messages_.bytes());
    messages_.clear();
    return isHeard;
}

} // namespace fennik
