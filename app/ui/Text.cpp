#include "app/ui/Text.h"

#include "app/model/ItemCount.h"
#include "core/base/DisplayText.h"

#include <ctime>

namespace fennik::ui {

namespace {

QString twoDigits(int number) {
    return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

} // namespace

QString shownName(std::string_view name) {
    return fromUtf8(displayText(name));
}

QString shownPath(std::string_view path, std::string_view home) {
    const bool isInHome = home != "/" && path.starts_with(home) &&
                          (path.size() == home.size() || path[home.size()] == '/');
    return isInHome ? QLatin1Char('~') + shownName(path.substr(home.size())) : shownName(path);
}

QString toolTipText(const QString& text) {
    return QStringLiteral("<span>%1</span>").arg(text.toHtmlEscaped());
}

QString menuText(const QString& text) {
    return QString(text).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString breakableText(const QString& text) {
    constexpr int unbroken = 8;
    constexpr QChar zeroWidthSpace(0x200B);
    QString broken;
    int length = 0;
    for (const auto character : text) {
        const bool continues = character.isLowSurrogate() || character.isMark();
        if (length >= 3 * unbroken && length % unbroken == 0 && !continues)
            broken += zeroWidthSpace;
        if (character.isSpace())
            length = 0;
        else if (!continues)
            ++length;
        broken += character;
    }
    return broken;
}

QString czechDate(const Date& date, DateDetail detail) {
    const std::time_t seconds = date.seconds;
    std::tm local{};
    if (date == Date::distantPast() || localtime_r(&seconds, &local) == nullptr)
        return {};
    auto text = QStringLiteral("%1. %2. %3 %4:%5")
                    .arg(local.tm_mday)
                    .arg(local.tm_mon + 1)
                    .arg(std::int64_t{local.tm_year} + 1900, 4, 10, QLatin1Char('0'))
                    .arg(local.tm_hour)
                    .arg(twoDigits(local.tm_min));
    if (detail == DateDetail::seconds)
        text += QLatin1Char(':') + twoDigits(local.tm_sec);
    return text;
}

QString itemCount(std::int64_t count) {
    return fromUtf8(app::itemCount(count));
}

} // namespace fennik::ui
