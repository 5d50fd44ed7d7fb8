#pragma once

namespace fennik::Threads {

/// Lets other threads go first whenever the processors do not suffice for all: from now on for the
/// calling thread and for those that it starts. Does nothing where the system knows no such order
/// of threads.
void giveWay();

} // namespace fennik::Threads
