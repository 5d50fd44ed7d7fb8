#pragma once

#include "core/base/Date.h"

#include <QString>

#include <string_view>

namespace fennik::ui {

/// The bytes of a name as they are shown.
QString shownName(std::string_view name);
/// The bytes of a path as they are shown, with the folder `home` as "~".
QString shownPath(std::string_view path, std::string_view home);
/// `text` for a tooltip. The toolkit would take a name such as "<img src=…>" for a document, and
/// open the file.
QString toolTipText(const QString& text);
/// `text` for the title of a menu's item, where "&" has a meaning.
QString menuText(const QString& text);
/// UTF-8 of the program's own.
QString fromUtf8(std::string_view text);

/// `text` for lines that wrap: a word that is longer than most may be broken, where a long name
/// would otherwise widen what holds it.
QString breakableText(const QString& text);

enum class DateDetail { minutes, seconds };
/// A date as Czechs write it, "20. 11. 2026 15:26", in local time; empty for the distant past.
QString czechDate(const Date& date, DateDetail detail);

/// The number with the noun in its right form: "1 položka", "3 položky", "23 položek".
QString itemCount(std::int64_t count);

} // namespace fennik::ui
