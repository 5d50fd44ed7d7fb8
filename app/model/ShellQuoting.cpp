#include "app/model/ShellQuoting.h"

namespace fennik::app {

std::string shellQuoted(std::string_view text) {
    std::string word = "'";
    for (const char byte : text) {
        if (byte == '\'')
            word += R"('\'')";
        else
            word += byte;
    }
    return word + "'";
}

} // namespace fennik::app
