#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>
#include <wctype.h>

namespace fennik {

/// A shell pattern for whole names (POSIX.1-2017, XCU 2.13.1 and 2.13.2), which matches as
/// `fnmatch` without flags does, by characters and never by bytes. It knows the characters of all
/// languages, whatever the locale of the process is; ranges go by the numbers of the scalars. A
/// bracket that is never closed stands for itself; a pattern that is malformed otherwise (a
/// backslash at the end, an unknown character class) matches nothing. Immutable, and so safe on any
/// thread.
///
/// Matching takes no more steps than the length of the name times that of the pattern, however many
/// stars there are, and no memory.
class NamePattern {
public:
    /// `text` in scalars.
    explicit NamePattern(std::u32string_view text);

    bool matches(std::u32string_view name) const;

private:
    struct Parser;

    /// What one character of a name is held against.
    struct Element {
        enum class Kind : std::uint8_t { scalar, any, set };
        Kind kind = Kind::any;
        char32_t value = 0; ///< the scalar, or the place in `sets_`
    };
    /// Elements without a star among them.
    using Run = std::vector<Element>;
    /// A bracket expression.
    struct Set {
        struct Range {
            char32_t first = 0;
            char32_t last = 0;
        };
        bool isInverted = false;
        std::vector<Range> ranges = {};
        std::vector<wctype_t> classes = {};

        bool contains(char32_t scalar) const;
    };

    bool matches(const Run& run, std::u32string_view name, std::size_t position) const;

    std::vector<Run> runs_{1}; ///< with a star between each two; none when nothing can match
    std::vector<Set> sets_;
    std::size_t shortest_ = 0; ///< scalars that a matching name has at least
};

} // namespace fennik
