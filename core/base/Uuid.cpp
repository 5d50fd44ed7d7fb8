#include "core/base/Uuid.h"

#include <random>

namespace fennik {

Uuid Uuid::random() {
    std::random_device source;
    std::uniform_int_distribution<unsigned> byte(0, 255);
    Uuid result;
    for (auto& value : result.bytes_)
        value = static_cast<std::uint8_t>(byte(source));
    result.bytes_[6] = static_cast<std::uint8_t>((result.bytes_[6] & 0x0FU) | 0x40U);
    result.bytes_[8] = static_cast<std::uint8_t>((result.bytes_[8] & 0x3FU) | 0x80U);
    return result;
}

} // namespace fennik
