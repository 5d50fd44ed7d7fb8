#include "tests/support/ProgramRun.h"

#include <array>
#include <cstdio>
#include <stdexcept>
#include <string_view>
#include <sys/wait.h>

namespace fennik::test {

namespace {

std::string quotedForShell(std::string_view word) {
    std::string quoted = "'";
    for (const char letter : word) {
        if (letter == '\'')
            quoted += "'\\'";
        quoted += letter;
    }
    return quoted + "'";
}

} // namespace

ProgramRun runProgram(const std::vector<std::string>& command, const std::string& folder) {
    auto line = "cd " + quotedForShell(folder) + " && exec 2>&1 </dev/null && LC_ALL=C.UTF-8";
    for (const auto& word : command)
        line += " " + quotedForShell(word);
    std::FILE* output = popen(line.c_str(), "r"); // NOLINT(cert-env33-c)
    if (output == nullptr)
        throw std::runtime_error("no shell");
    ProgramRun run;
    std::array<char, 4096> buffer{};
    while (const auto length = std::fread(buffer.data(), 1, buffer.size(), output))
        run.output.append(buffer.data(), length);
    const int status = pclose(output);
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

} // namespace fennik::test
