#include "core/archives/helper/Message.h"

namespace fennik {

void MessageWriter::begin(MessageKind kind) {
    begin_ = bytes_.size();
    const MessageHead head{.kind = kind};
    raw(&head, sizeof head);
}

void MessageWriter::text(std::string_view value) {
    number(static_cast<std::uint32_t>(value.size()));
    raw(value.data(), value.size());
}

void MessageWriter::finish() {
    const auto size = static_cast<std::uint32_t>(bytes_.size() - begin_ - sizeof(MessageHead));
    std::memcpy(&bytes_[begin_ + offsetof(MessageHead, size)], &size, sizeof size);
}

void MessageWriter::raw(const void* data, std::size_t size) {
    const auto* const bytes = static_cast<const std::byte*>(data);
    bytes_.insert(bytes_.end(), bytes, bytes + size);
}

std::string MessageReader::text() {
    const auto bytes = take(number<std::uint32_t>());
    std::string value(bytes.size(), '\0');
    if (!bytes.empty())
        std::memcpy(value.data(), bytes.data(), bytes.size());
    return value;
}

void MessageReader::spoil() {
    isSpoilt_ = true;
    left_ = {};
}

std::span<const std::byte> MessageReader::take(std::size_t size) {
    if (size > left_.size()) {
        spoil();
        return {};
    }
    const auto taken = left_.first(size);
    left_ = left_.subspan(size);
    return taken;
}

} // namespace fennik
