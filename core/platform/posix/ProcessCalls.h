#pragma once

#include <cstdint>
#include <spawn.h>
#include <sys/types.h>

namespace fennik {

/// Has the process to be started close every descriptor from `first` on. An errno value.
int closeFrom(posix_spawn_file_actions_t& actions, int first);

/// Whether the leader of a group of processes, itself ended or not, has no others in it that run.
/// False where the system does not tell.
bool isAloneInGroup(pid_t leader);

/// Lets a pipe hold as much as an ordinary user may have in it.
void widenPipe(int descriptor);

/// What this process starts gets no rights that it does not have itself.
void refuseNewRights();

/// Bytes of address space that this process uses; 0 where the system does not tell.
std::int64_t mappedBytes();

} // namespace fennik
