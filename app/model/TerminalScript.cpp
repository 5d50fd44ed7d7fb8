#include "app/model/TerminalScript.h"

#include "app/model/ShellQuoting.h"

namespace fennik::app::TerminalScript {

std::string opening(const FileUrl& folder) {
    std::string script = "tell application \"Terminal\"\nactivate\ndo script \"cd ";
    for (const char byte : shellQuoted(folder.path())) {
        // It stands inside a text of the script.
        if (byte == '\\' || byte == '"')
            script += '\\';
        script += byte;
    }
    return script + "\"\nend tell";
}

} // namespace fennik::app::TerminalScript
