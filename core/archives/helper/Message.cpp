#include "core/archives/helper/Message.h"

namespace fennik {

void MessageWriter::begin(MessageKind kind) {
    begin_ = end_;
    const MessageHead head{.kind = kind};
    raw(&head, sizeof head);
}

void MessageWriter::text(std::string_view value) {
    number(static_cast<std::uint32_t>(value.size()));
    raw(value.data(), value.size());
}

void MessageWriter::finish() {
    const auto size = static_cast<std::uint32_t>(end_ - begin_ - sizeof(MessageHead));
    std::memcpy(&bytes_[begin_ + offsetof(MessageHead, size)], &size, sizeof size);
}

std::string MessageReader::text() {
    const auto bytes = take(number<std::uint32_t>());
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

void MessageReader::spoil() {
    isSpoilt_ = true;
    left_ = {};
}

} // namespace fennik
