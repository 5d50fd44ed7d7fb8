#include "app/model/ShellWord.h"

namespace fennik::app {

std::optional<std::string> shellWord(std::string_view text) {
    std::string word;
    char quote = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char byte = text[i];
        if (quote != 0 && byte == quote) {
            quote = 0;
        } else if (quote == 0 && (byte == '\'' || byte == '"')) {
            quote = byte;
        } else if (byte == '\\' && quote != '\'') {
            if (++i == text.size())
                return std::nullopt;
            // Between double quotes, it stands for itself before most others.
            const bool isTakenOff = quote == 0 || std::string_view("\\\"$`").contains(text[i]);
            if (!isTakenOff)
                word += byte;
            word += text[i];
        } else if (quote == 0 && std::string_view(" \t\n").contains(byte)) {
            return std::nullopt;
        } else {
            word += byte;
        }
    }
    if (quote != 0)
        return std::nullopt;
    return word;
}

} // namespace fennik::app
