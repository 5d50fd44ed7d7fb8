#pragma once

#include <optional>
#include <string>
#include <vector>

/// The terminals that a desktop may have. Looks at the disk; used on workers.
namespace fennik::system::Terminals {

/// The program and its arguments that open a terminal in the folder where they are started, with a
/// shell, or with `command` where there is one. None: there is no terminal.
std::optional<std::vector<std::string>> opening(const std::string& folder,
                                                const std::vector<std::string>& command = {});

} // namespace fennik::system::Terminals
