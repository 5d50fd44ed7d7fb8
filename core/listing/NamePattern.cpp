#include "core/listing/NamePattern.h"

#include <algorithm>
#include <clocale>
#include <optional>
#include <string>

namespace fennik {

namespace {

/// Knows the characters of all languages; lives as long as the process.
locale_t utf8Locale() {
    static const locale_t locale = [] {
        auto* const utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return utf8 != nullptr ? utf8 : newlocale(LC_CTYPE_MASK, "C", nullptr);
    }();
    return locale;
}

} // namespace

/// Reads a pattern from its begin to its end.
struct NamePattern::Parser {
    /// How reading a bracket expression or a part of it ended.
    enum class End { complete, unclosed, malformed };

    std::u32string_view text;
    std::size_t position = 0;

    bool isAtEnd() const { return position == text.size(); }
    bool isNext(std::u32string_view expected) const {
        return text.substr(position).starts_with(expected);
    }
    bool take(std::u32string_view expected) {
        if (!isNext(expected))
            return false;
        position += expected.size();
        return true;
    }

    /// The rest of a bracket expression, whose "[" has been read.
    End readSet(Set& set) {
        // A pattern of brackets alone is then read without going to its end for each of them.
        if (text.find(U']', position) == std::u32string_view::npos)
            return End::unclosed;
        set.isInverted = take(U"!") || take(U"^");
        for (bool isFirst = true; isFirst || !take(U"]"); isFirst = false) {
            if (isAtEnd())
                return End::unclosed;
            if (takeClass(set)) {
                if (set.classes.back() == 0)
                    return End::malformed;
                continue;
            }
            Set::Range range;
            auto end = readRangeEnd(range.first);
            range.last = range.first;
            if (end == End::complete && isNext(U"-") && !isNext(U"-]") &&
                position + 1 < text.size()) {
                ++position;
                end = readRangeEnd(range.last);
            }
            if (end != End::complete)
                return end;
            set.ranges.push_back(range);
        }
        return End::complete;
    }

    /// Something like "[:alpha:]", of which an unknown name is the class 0.
    bool takeClass(Set& set) {
        if (!isNext(U"[:"))
            return false;
        std::string name;
        auto end = position + 2;
        for (; end < text.size() && text[end] >= U'a' && text[end] <= U'z'; ++end)
            name += static_cast<char>(text[end]);
        if (!text.substr(end).starts_with(U":]"))
            return false;
        position = end + 2;
        set.classes.push_back(wctype_l(name.c_str(), utf8Locale()));
        return true;
    }

    /// One character, which may be escaped, a collating symbol or an equivalence class. In this
    /// locale both of the latter hold the character that they name and no other.
    End readRangeEnd(char32_t& scalar) {
        if (take(U"[.")) {
            const auto length = text.substr(position).find(U".]");
            if (length != 1)
                return End::malformed;
            scalar = text[position];
            position += 3;
            return End::complete;
        }
        if (isNext(U"[=") && text.size() - position >= 5 &&
            text.substr(position + 3).starts_with(U"=]")) {
            scalar = text[position + 2];
            position += 5;
            return End::complete;
        }
        if (take(U"\\") && isAtEnd())
            return End::malformed;
        scalar = text[position++];
        return End::complete;
    }
};

NamePattern::NamePattern(std::u32string_view text) {
    Parser parser{.text = text};
    while (!parser.isAtEnd()) {
        if (parser.take(U"*")) {
            // Stars in a row are one.
            if (runs_.size() == 1 || !runs_.back().empty())
                runs_.emplace_back();
            continue;
        }
        Element element;
        if (parser.take(U"?")) {
            element.kind = Element::Kind::any;
        } else {
            element.kind = Element::Kind::scalar;
            const bool isEscaped = parser.take(U"\\");
            if (parser.isAtEnd()) {
                runs_.clear();
                return;
            }
            element.value = text[parser.position++];
            if (element.value == U'[' && !isEscaped) {
                const auto afterBracket = parser.position;
                Set set;
                switch (parser.readSet(set)) {
                case Parser::End::complete:
                    element = {Element::Kind::set, static_cast<char32_t>(sets_.size())};
                    sets_.push_back(std::move(set));
                    break;
                case Parser::End::unclosed:
                    parser.position = afterBracket;
                    break;
                case Parser::End::malformed:
                    runs_.clear();
                    return;
                }
            }
        }
        runs_.back().push_back(element);
        ++shortest_;
    }
}

bool NamePattern::matches(std::u32string_view name) const {
    if (runs_.empty() || name.size() < shortest_ || !matches(runs_.front(), name, 0))
        return false;
    if (runs_.size() == 1)
        return name.size() == shortest_;
    // Of the runs between the first and the last, the leftmost place that fits leaves most room for
    // those behind it, so no choice has ever to be taken back.
    const auto end = name.size() - runs_.back().size();
    if (!matches(runs_.back(), name, end))
        return false;
    auto position = runs_.front().size();
    for (std::size_t i = 1; i + 1 < runs_.size(); ++i) {
        while (position + runs_[i].size() <= end && !matches(runs_[i], name, position))
            ++position;
        position += runs_[i].size();
        if (position > end)
            return false;
    }
    return true;
}

bool NamePattern::matches(const Run& run, std::u32string_view name, std::size_t position) const {
    return std::ranges::all_of(run, [&](const Element& element) {
        const auto scalar = name[position++];
        switch (element.kind) {
        case Element::Kind::scalar:
            return scalar == element.value;
        case Element::Kind::any:
            return true;
        case Element::Kind::set:
            break;
        }
        return sets_[element.value].contains(scalar);
    });
}

bool NamePattern::Set::contains(char32_t scalar) const {
    const bool isListed =
        std::ranges::any_of(ranges,
                            [scalar](const auto& range) {
                                return scalar >= range.first && scalar <= range.last;
                            }) ||
        std::ranges::any_of(classes, [scalar](auto kind) {
            return iswctype_l(static_cast<wint_t>(scalar), kind, utf8Locale()) != 0;
        });
    return isListed != isInverted;
}

} // namespace fennik
