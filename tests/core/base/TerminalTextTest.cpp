#include "core/base/TerminalText.h"

#include <gmock/gmock.h>

namespace fennik::test {

namespace {

using testing::ElementsAre;

/// All of it, the line that has not ended last; every piece has so many bytes.
std::vector<std::string> linesOf(std::string_view bytes, std::size_t pieces) {
    TerminalText text;
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < bytes.size(); begin += pieces)
        for (auto& line : text.take(bytes.substr(begin, pieces)))
            lines.push_back(std::move(line));
    text.finish();
    lines.push_back(text.line());
    return lines;
}

TEST(TerminalText, isTheSameHoweverItIsCut) {
    using namespace std::string_view_literals;
    const auto bytes = "p\u0159\u00edl\u00ed\u0161 \U0001F98A\n"           // several bytes each
                       "\x1b[1;31mcolour\x1b[0m\n"                         // a control sequence
                       "\x1b]8;;https://example.org\x1b\\link\x1b]8;;\a\n" // strings
                       "\x1b(Bset\x1b=\x1bPdevice\x1b\\ \x1b[31\x18"
                       "cancelled\n"                    // others
                       "\xff\xc3(\xe2\x82\n\xf0\x9f"sv; // no UTF-8
    for (const std::size_t pieces : {std::size_t(1), std::size_t(2), std::size_t(3), bytes.size()})
        EXPECT_THAT(linesOf(bytes, pieces),
                    ElementsAre("p\u0159\u00edl\u00ed\u0161 \U0001F98A", "colour", "link",
                                "set cancelled", "\uFFFD\uFFFD(\uFFFD\uFFFD", "\uFFFD\uFFFD"))
            << pieces;
}

TEST(TerminalText, overwritesTheLineAsProgressBarsDo) {
    EXPECT_THAT(linesOf("10 %\r 20 %\r100 %\r\nab\b\bc\nlonger\rsh\x1b[K\nx\x1b[2K\ry\n", 64),
                ElementsAre("100 %", "cb", "sh", "y", ""));
}

TEST(TerminalText, leavesOutWhatIsNoText) {
    using namespace std::string_view_literals;
    EXPECT_THAT(linesOf("a\0b\a\x7f\v\f\u0085c\td\u2028\u2029\u202e\ufdd0"sv, 64),
                ElementsAre("abc\td\uFFFD\uFFFD\uFFFD\uFFFD"));
    // What looks like the beginning of a string does not swallow all that follows.
    const auto lines = linesOf("\x1b]" + std::string(5000, 'x') + "\nend", 64);
    EXPECT_EQ(lines.back(), "end");
}

TEST(TerminalText, breaksALineThatDoesNotEnd) {
    const auto lines = linesOf(std::string(2 * TerminalText::longestLine + 1, 'x'), 1000);
    EXPECT_THAT(lines, ElementsAre(std::string(TerminalText::longestLine, 'x'),
                                   std::string(TerminalText::longestLine, 'x'), "x"));
}

} // namespace

} // namespace fennik::test
