#pragma once

#include <string>
#include <vector>

namespace fennik::test {

/// How a program ended, and all that it printed.
struct ProgramRun {
    int exitCode = -1; ///< 127: there is no such program
    std::string output = {};
};

/// Runs an ordinary tool in `folder`, in a plain locale with UTF-8, without any input.
ProgramRun runProgram(const std::vector<std::string>& command, const std::string& folder = "/");

} // namespace fennik::test
