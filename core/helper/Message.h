#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace fennik {

/// Before each message of Fennik and its helper, two processes that talk through pipes: which one
/// it is, and how many bytes of fields come behind it.
struct MessageHead {
    std::uint32_t kind = 0; ///< of an enumeration that the two have agreed upon
    std::uint32_t size = 0;
};

/// More no message of the helper has.
constexpr std::size_t longestMessage = std::size_t{256} << 10;

/// Puts messages one behind the other, their fields as the machine keeps them.
class MessageWriter {
public:
    template <class Kind>
        requires std::is_enum_v<Kind>
    void begin(Kind kind) {
        beginNumbered(static_cast<std::uint32_t>(kind));
    }
    template <std::integral Number>
    void number(Number value) {
        raw(&value, sizeof value);
    }
    template <class Choice>
        requires std::is_enum_v<Choice>
    void choice(Choice value) {
        number(static_cast<std::uint8_t>(value));
    }
    void flag(bool value) { number<std::uint8_t>(value ? 1 : 0); }
    void text(std::string_view value);
    /// Without their count; the last field.
    void rest(std::span<const std::byte> bytes) { raw(bytes.data(), bytes.size()); }
    void finish();

    std::span<const std::byte> bytes() const { return std::span(bytes_).first(end_); }
    void clear() { end_ = 0; }

private:
    void beginNumbered(std::uint32_t kind);
    void raw(const void* data, std::size_t size) {
        if (size > bytes_.size() - end_)
            bytes_.resize(2 * bytes_.size() + size);
        if (size > 0)
            std::memcpy(&bytes_[end_], data, size);
        end_ += size;
    }

    std::vector<std::byte> bytes_;
    std::size_t begin_ = 0; ///< of the message that is being written
    std::size_t end_ = 0;   ///< of what was written
};

/// Takes the fields of one message, whoever has sent it. After the first one that is not there or
/// makes no sense, all are empty, and the message is not `isWhole`.
class MessageReader {
public:
    explicit MessageReader(std::span<const std::byte> fields) : left_(fields) {}

    template <std::integral Number>
    Number number() {
        Number value{};
        const auto bytes = take(sizeof value);
        if (!bytes.empty())
            std::memcpy(&value, bytes.data(), sizeof value);
        return value;
    }
    bool flag() { return choice(Flag::yes) == Flag::yes; }
    template <class Choice>
    Choice choice(Choice last) {
        const auto value = number<std::uint8_t>();
        if (value <= static_cast<std::uint8_t>(last))
            return static_cast<Choice>(value);
        spoil();
        return Choice{};
    }
    std::string text();
    std::span<const std::byte> rest() { return take(left_.size()); }

    /// Everything that was asked for was there, and nothing is left.
    bool isWhole() const { return !isSpoilt_ && left_.empty(); }
    bool isSpoilt() const { return isSpoilt_; }
    void spoil();

private:
    enum class Flag : std::uint8_t { no, yes };

    std::span<const std::byte> take(std::size_t size) {
        if (size > left_.size()) {
            spoil();
            return {};
        }
        const auto taken = left_.first(size);
        left_ = left_.subspan(size);
        return taken;
    }

    std::span<const std::byte> left_;
    bool isSpoilt_ = false;
};

} // namespace fennik
