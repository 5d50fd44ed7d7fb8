#pragma once

namespace fennik::Memory {

/// Lets the allocator give large blocks back to the system as soon as they are freed, at every size
/// from a mebibyte on. Listings and their sorting need such blocks for moments only. Call once, at
/// start.
void returnLargeBlocks();

} // namespace fennik::Memory
