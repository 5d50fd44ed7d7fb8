#include "app/ui/NameText.h"

#include "core/base/Utf8.h"

namespace fennik::ui::NameText {

namespace {

constexpr char32_t firstStandIn = 0xDC00; // plus the byte

} // namespace

QString fromBytes(std::string_view name) {
    QString text;
    for (std::size_t position = 0; position < name.size();) {
        const auto begin = position;
        const auto scalar = Utf8::next(name, position);
        const bool isInvalid = scalar == Utf8::replacement && position == begin + 1;
        if (isInvalid)
            text += QChar(char16_t(firstStandIn + static_cast<unsigned char>(name[begin])));
        else
            text += QString::fromUcs4(&scalar, 1);
    }
    return text;
}

std::string toBytes(const QString& text) {
    std::string name;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const auto unit = text[i];
        const char32_t byte = unit.unicode() - firstStandIn;
        if (unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            Utf8::append(name, QChar::surrogateToUcs4(unit, text[++i]));
        else if (unit.isLowSurrogate() && byte >= 0x80 && byte <= 0xFF)
            name += static_cast<char>(byte);
        else
            Utf8::append(name, unit.isSurrogate() ? Utf8::replacement : unit.unicode());
    }
    return name;
}

} // namespace fennik::ui::NameText
