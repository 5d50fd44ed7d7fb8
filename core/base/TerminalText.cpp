#include "core/base/TerminalText.h"

#include "core/base/Utf8.h"

#include <algorithm>
#include <utility>

namespace fennik {

namespace {

constexpr char32_t bell = 0x07;
constexpr char32_t cancel = 0x18;
constexpr char32_t substitute = 0x1A;
constexpr char32_t escape = 0x1B;
/// A string that no program writes is the output of something that is no text.
constexpr std::size_t longestString = 4096;

bool isControl(char32_t scalar) {
    return scalar < 0x20 || (scalar >= 0x7F && scalar < 0xA0);
}

/// Whether a view of text would make something else of it than a character in its place.
bool breaksText(char32_t scalar) {
    const bool isSeparator = scalar == 0x2028 || scalar == 0x2029;
    const bool turnsDirection =
        (scalar >= 0x202A && scalar <= 0x202E) || (scalar >= 0x2066 && scalar <= 0x2069);
    const bool isNoCharacter =
        (scalar >= 0xFDD0 && scalar <= 0xFDEF) || (scalar & 0xFFFE) == 0xFFFE;
    return isSeparator || turnsDirection || isNoCharacter;
}

bool continues(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// How many bytes at the end may be the beginning of a character whose rest is yet to come.
std::size_t incompleteBytes(std::string_view bytes) {
    constexpr std::size_t longest = 4;
    for (std::size_t count = 1; count < longest && count <= bytes.size(); ++count) {
        const char byte = bytes[bytes.size() - count];
        if (continues(byte))
            continue;
        const auto lead = static_cast<unsigned char>(byte);
        const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
        return length > count ? count : 0;
    }
    return 0;
}

} // namespace

std::vector<std::string> TerminalText::take(std::string_view bytes) {
    std::string joined;
    if (!incomplete_.empty()) {
        joined = std::exchange(incomplete_, {}).append(bytes);
        bytes = joined;
    }
    const auto rest = incompleteBytes(bytes);
    incomplete_ = bytes.substr(bytes.size() - rest);
    bytes.remove_suffix(rest);
    for (std::size_t position = 0; position < bytes.size();)
        take(Utf8::next(bytes, position));
    return std::exchange(ended_, {});
}

std::string TerminalText::line() const {
    std::string text;
    for (const auto scalar : line_)
        Utf8::append(text, scalar);
    return text;
}

bool TerminalText::finish() {
    const auto rest = std::exchange(incomplete_, {}).size();
    for (std::size_t i = 0; i < rest; ++i)
        take(Utf8::replacement);
    return rest > 0;
}

void TerminalText::take(char32_t scalar) {
    if (state_ == State::text)
        takeText(scalar);
    else
        takeEscape(scalar);
}

void TerminalText::takeText(char32_t scalar) {
    if (isControl(scalar))
        takeControl(scalar);
    else
        write(breaksText(scalar) ? Utf8::replacement : scalar);
}

void TerminalText::takeControl(char32_t scalar) {
    switch (scalar) {
    case U'\n':
        endLine();
        break;
    case U'\r':
        column_ = 0;
        break;
    case U'\b':
        column_ = column_ > 0 ? column_ - 1 : 0;
        break;
    case U'\t':
        write(scalar);
        break;
    case escape:
        state_ = State::escape;
        break;
    default:
        break;
    }
}

void TerminalText::takeEscape(char32_t scalar) {
    if (scalar == cancel || scalar == substitute) {
        state_ = State::text;
        return;
    }
    switch (state_) {
    case State::escape:
        if (scalar == U'[') {
            state_ = State::control;
            parameters_.clear();
        } else if (scalar == U']' || scalar == U'P' || scalar == U'X' || scalar == U'^' ||
                   scalar == U'_') {
            state_ = State::string;
            stringLength_ = 0;
        } else if (scalar >= 0x20 && scalar < 0x30) {
            state_ = State::escapeTail;
        } else {
            state_ = State::text;
            if (isControl(scalar))
                takeControl(scalar);
        }
        break;
    case State::escapeTail:
        if (scalar < 0x20 || scalar >= 0x30)
            state_ = State::text;
        break;
    case State::control:
        if (scalar >= 0x20 && scalar < 0x40 && parameters_.size() < longestString) {
            parameters_ += scalar;
        } else if (scalar == escape) {
            state_ = State::escape;
        } else {
            state_ = State::text;
            if (scalar == U'K')
                eraseInLine();
            else if (isControl(scalar))
                takeControl(scalar);
        }
        break;
    case State::string:
        if (scalar == escape)
            state_ = State::stringEscape;
        else if (scalar == bell || ++stringLength_ > longestString)
            state_ = State::text;
        break;
    case State::stringEscape: // its end, unless another sequence begins
        state_ = State::text;
        if (scalar != U'\\') {
            state_ = State::escape;
            takeEscape(scalar);
        }
        break;
    case State::text:
        break;
    }
}

void TerminalText::write(char32_t scalar) {
    if (column_ >= longestLine)
        endLine();
    if (column_ < line_.size())
        line_[column_] = scalar;
    else
        line_.append(column_ - line_.size(), U' ').push_back(scalar);
    ++column_;
}

void TerminalText::eraseInLine() {
    const bool isWhole = parameters_ == U"2";
    if (isWhole)
        line_.clear();
    else if (parameters_ == U"1")
        std::fill_n(line_.begin(), std::min(column_ + 1, line_.size()), U' ');
    else
        line_.resize(std::min(column_, line_.size()));
}

void TerminalText::endLine() {
    ended_.push_back(line());
    line_.clear();
    column_ = 0;
}

} // namespace fennik
