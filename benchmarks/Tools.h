#pragma once

#include <string>
#include <vector>

namespace fennik::bench {

/// Ends once the tool has written its output to nowhere. A tool that fails ends the program.
void runTool(std::vector<std::string> words);

} // namespace fennik::bench
