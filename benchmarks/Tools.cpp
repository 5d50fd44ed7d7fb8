#include "benchmarks/Tools.h"

#include <cstdlib>
#include <fcntl.h>
#include <iostream>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fennik::bench {

void runTool(std::vector<std::string> words) {
    std::vector<char*> arguments;
    for (auto& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process = 0;
    int status = 0;
    const bool ran =
        posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ) == 0 &&
        waitpid(process, &status, 0) == process && status == 0;
    posix_spawn_file_actions_destroy(&actions);
    if (!ran) {
        std::cerr << words.front() << " does not run.\n";
        std::exit(EXIT_FAILURE);
    }
}

} // namespace fennik::bench
