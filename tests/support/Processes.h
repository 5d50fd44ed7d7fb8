#pragma once

#include <map>
#include <string>
#include <vector>

namespace fennik::test {

/// As the system tells it: 'R' at work, 'S' waiting, 'Z' ended; none: 'X'.
char stateOf(const std::string& process);
bool isAlive(const std::string& process);
/// Whether the process ends within some seconds.
bool endsSoon(const std::string& process);

/// The processes that this one has started and that have not ended.
std::vector<std::string> childProcesses();

/// What lies behind each descriptor of a process; "self": of this one.
std::map<int, std::string> descriptorsOf(const std::string& process);

} // namespace fennik::test
