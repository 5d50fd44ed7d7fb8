#pragma once

#include <map>
#include <string>

namespace fennik::test {

/// Whether the process with this number has not yet ended.
bool isAlive(const std::string& process);

/// What lies behind each descriptor of a process; "self": of this one.
std::map<int, std::string> descriptorsOf(const std::string& process);

} // namespace fennik::test
