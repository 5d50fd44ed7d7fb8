#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

/// What a process that is to trust nobody does to itself, and how it talks to the one that has
/// started it as a `ChildProcess`.
namespace fennik::OwnProcess {

/// By this path the program of this process can be started once more, also after its file was
/// replaced.
std::string program();

/// The path of another program that lies in the same folder.
std::string programBeside(std::string_view name);

/// Whether standard input and output are pipes, as `ChildProcess` makes them.
bool hasPipes();

/// Calls `onEnd`, on a thread of its own, once nobody can write to the standard input any more,
/// whatever the other threads do. Input that was not read yet does not matter.
void watchInput(std::function<void()> onEnd);

/// Fills the bytes from the standard input; false where it ends before.
bool readAll(std::span<std::byte> bytes);
/// False where nobody reads the standard output any more.
bool writeAll(std::span<const std::byte> bytes);

/// A part of what it may have open at most, as others need theirs too: one of `parts`, `least` and
/// `most` included.
std::size_t shareOfOpenFiles(std::size_t parts, std::size_t least, std::size_t most);

/// Of a clock that never goes back, exact to some milliseconds. Costs next to nothing.
std::chrono::milliseconds roughTime();

/// From now on this process leaves no memory image behind when it crashes, what it starts gets no
/// rights that it does not have itself, and writing where nobody reads is a mere failure.
void renounce();
/// Lets the process map so much besides what it has mapped; more makes allocations fail.
void limitMemory(std::int64_t bytes);
/// The system ends the process when it has used so much more processor time. Each call takes the
/// place of the one before.
void limitProcessor(std::chrono::seconds time);

} // namespace fennik::OwnProcess
