#include "core/base/CzechText.h"

#include "core/base/DisplayText.h"

namespace fennik {

std::string quoted(std::string_view name) {
    return "„" + displayText(name) + "“";
}

std::string_view pluralForm(std::int64_t count, const PluralForms& forms) {
    if (count == 1)
        return forms.one;
    return count >= 2 && count <= 4 ? forms.few : forms.many;
}

} // namespace fennik
