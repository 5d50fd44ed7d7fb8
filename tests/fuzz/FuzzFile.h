#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace fennik::test {

/// An open file without a name that holds these bytes; whoever calls closes it.
int fileHolding(std::span<const std::uint8_t> bytes);

/// Ends the program, which is what a fuzzer looks for, unless it holds.
void require(bool holds, const char* what);

} // namespace fennik::test
