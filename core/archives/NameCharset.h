#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

namespace fennik {

/// The character set of names in an archive that are not UTF-8 and do not say what they are. Sets
/// of one byte a character only: the ones that archives made in central and eastern Europe have.
class NameCharset {
public:
    /// `name` as ICU calls it. A set that it does not know has no characters beyond ASCII.
    explicit NameCharset(const std::string& name);

    /// The path with every component that is not UTF-8 decoded; always valid UTF-8. A byte that
    /// stands for no character of its own is U+FFFD and its two hexadecimal digits, so that
    /// different components never become the same.
    std::string decoded(std::string_view path) const;

    /// What the bytes from 128 on stand for; U+FFFD: nothing.
    const std::array<char32_t, 128>& characters() const { return characters_; }

    /// The set, as ICU calls it, in which these names look most like names that people give: Czech
    /// ones, else Russian ones. The same names give the same set.
    static std::string guess(std::span<const std::string_view> names);

private:
    std::array<char32_t, 128> characters_{};
};

} // namespace fennik
