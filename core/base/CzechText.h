#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace fennik {

/// `name` as it stands in a sentence: shown as `displayText` does, between the Czech quotes „ and
/// “.
std::string quoted(std::string_view name);

/// The forms that a Czech noun takes after a number.
struct PluralForms {
    std::string_view one;  ///< after 1
    std::string_view few;  ///< after 2, 3 and 4
    std::string_view many; ///< after 0 and after 5 and more
};

/// The form that goes with `count`, without the number.
std::string_view pluralForm(std::int64_t count, const PluralForms& forms);

} // namespace fennik
