#include "core/platform/Threads.h"

#include <sys/resource.h>
#include <unistd.h>

namespace fennik::Threads {

void giveWay() {
    // A tenth of what the others get. Here each thread has a niceness of its own.
    constexpr int niceness = 10;
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), niceness);
}

} // namespace fennik::Threads
