#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace fennik {

/// Makes lines of plain text of what a program writes for a terminal, as it comes in pieces that
/// end anywhere. Bytes that are not UTF-8 become U+FFFD, as do line separators and characters that
/// would turn the direction of the text. Escape sequences (ECMA-48) and control characters are
/// left out, but for tabs and for what moves within the line: a carriage return and a backspace
/// have it overwritten, "erase in line" cuts it.
class TerminalText {
public:
    /// Longer lines are broken: a program may write without ever ending one.
    static constexpr std::size_t longestLine = 4096; ///< characters

    /// The lines that end in `bytes`, in UTF-8 and without their ends.
    std::vector<std::string> take(std::string_view bytes);
    /// The line that has not ended yet.
    std::string line() const;
    /// No more bytes will come, and half a character is none. Whether the line is another one now.
    bool finish();

private:
    enum class State { text, escape, escapeTail, control, string, stringEscape };

    void take(char32_t scalar);
    void takeText(char32_t scalar);
    void takeControl(char32_t scalar);
    void takeEscape(char32_t scalar);
    void write(char32_t scalar);
    void eraseInLine();
    void endLine();

    std::vector<std::string> ended_;
    std::string incomplete_; ///< the beginning of a character
    std::u32string line_;
    std::size_t column_ = 0; ///< where the next character goes
    State state_ = State::text;
    std::u32string parameters_;    ///< of the control sequence
    std::size_t stringLength_ = 0; ///< of what is left out
};

} // namespace fennik
