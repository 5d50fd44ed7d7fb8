#pragma once

#include <cstdint>
#include <string>

/// Trees added up with the system calls that nobody can do without: what Fennik's folder sizes are
/// measured against. A failing call ends the program, as the figures would mean nothing.
namespace fennik::bench {

struct TreeTotals {
    std::int64_t bytes = 0;
    std::int64_t files = 0;
    std::int64_t folders = 0;
};

/// `threads` threads take folders from one stack and examine nothing but regular files.
TreeTotals addUpTree(const std::string& root, int threads);

} // namespace fennik::bench
