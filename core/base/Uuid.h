#pragma once

#include <array>
#include <compare>
#include <cstdint>

namespace fennik {

/// A universally unique identifier (RFC 9562).
class Uuid {
public:
    /// A new random one, version 4.
    static Uuid random();

    friend auto operator<=>(const Uuid&, const Uuid&) = default;

private:
    std::array<std::uint8_t, 16> bytes_{};
};

} // namespace fennik
