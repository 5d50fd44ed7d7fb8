#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace fennik {

/// A universally unique identifier (RFC 9562).
class Uuid {
public:
    /// A new random one, version 4.
    static Uuid random();

    /// Reads the text form, in letters of either case; none for anything else.
    static std::optional<Uuid> parse(std::string_view text);
    /// "f81d4fae-7dec-11d0-a765-00a0c91e6bf6": RFC 9562, section 4, in lower case.
    std::string text() const;

    friend auto operator<=>(const Uuid&, const Uuid&) = default;

private:
    std::array<std::uint8_t, 16> bytes_{};
};

} // namespace fennik
