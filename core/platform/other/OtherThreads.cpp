#include "core/platform/Threads.h"

namespace fennik::Threads {

void giveWay() {}

} // namespace fennik::Threads
