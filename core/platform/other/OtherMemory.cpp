#include "core/platform/Memory.h"

namespace fennik::Memory {

void returnLargeBlocks() {}

} // namespace fennik::Memory
