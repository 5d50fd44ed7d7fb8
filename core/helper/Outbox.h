#pragma once

#include "core/helper/Message.h"

namespace fennik {

/// What the helper says, kept until it is worth a call of the system.
class Outbox {
public:
    /// Whatever is put here has to be finished before the next call.
    MessageWriter& messages() { return messages_; }
    bool isFull() const;
    /// False where nobody listens any more.
    bool send();

private:
    MessageWriter messages_;
};

} // namespace fennik
