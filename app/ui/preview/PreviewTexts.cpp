#include "app/ui/preview/PreviewTexts.h"

#include "app/ui/FileLook.h"
#include "app/ui/PanelWords.h"
#include "app/ui/Text.h"
#include "core/base/CzechText.h"
#include "core/base/Overloaded.h"
#include "core/listing/Format.h"

#include <algorithm>
#include <string>

namespace fennik::ui::PreviewTexts {

namespace {

QString grouped(std::int64_t number) {
    return fromUtf8(Format::grouped(number));
}

QString dimensions(int width, int height) {
    return QStringLiteral("%1 × %2").arg(grouped(width), grouped(height));
}

/// What is to be said of the content in one fact; without a title where there is nothing.
Fact factOf(const app::PreviewContent& content) {
    return std::visit(
        Overloaded{
            [](const app::PreviewNothing&) { return Fact{}; },
            [](const app::PreviewBytes&) { return Fact{}; },
            [](const app::PreviewText& text) {
                return Fact{QStringLiteral("Kódování"), fromUtf8(text.charset)};
            },
            [](const app::PreviewList& list) {
                return Fact{QStringLiteral("Obsah"), countsOf(list)};
            },
            [](const app::DecodedPicture& picture) {
                if (picture.pages > 0)
                    return Fact{QStringLiteral("Počet stran"), grouped(picture.pages)};
                if (picture.fullWidth == 0)
                    return Fact{};
                return Fact{QStringLiteral("Rozměry"),
                            dimensions(picture.fullWidth, picture.fullHeight)};
            },
            [](const app::DecodedMedia& media) {
                if (media.width > 0)
                    return Fact{QStringLiteral("Rozměry"), dimensions(media.width, media.height)};
                return media.seconds > 0 ? Fact{QStringLiteral("Délka"),
                                                fromUtf8(Format::duration(media.seconds))}
                                         : Fact{};
            },
        },
        content);
}

} // namespace

QString hex(std::span<const std::byte> bytes, std::size_t bytesPerLine) {
    constexpr auto digits = "0123456789abcdef";
    std::string lines;
    for (std::size_t begin = 0; begin < bytes.size(); begin += bytesPerLine) {
        const auto line = bytes.subspan(begin, std::min(bytesPerLine, bytes.size() - begin));
        for (unsigned shift = 32; shift > 0; shift -= 4)
            lines += digits[(begin >> (shift - 4)) & 0xFU];
        lines += "  ";
        for (std::size_t i = 0; i < bytesPerLine; ++i) {
            if (i < line.size()) {
                const auto value = std::to_integer<unsigned>(line[i]);
                lines += digits[value >> 4U];
                lines += digits[value & 0xFU];
            } else {
                lines += "  ";
            }
            lines += ' ';
        }
        lines += ' ';
        for (const auto byte : line) {
            const auto character = std::to_integer<char>(byte);
            lines += character >= ' ' && character <= '~' ? character : '.';
        }
        lines += '\n';
    }
    if (!lines.empty())
        lines.pop_back();
    return QString::fromLatin1(lines);
}

QString countsOf(const app::PreviewList& list) {
    const auto counted = [](std::int64_t count, const PluralForms& forms) {
        return grouped(count) + QLatin1Char(' ') + fromUtf8(pluralForm(count, forms));
    };
    auto text = counted(list.files, {"soubor", "soubory", "souborů"});
    if (list.folders)
        text = counted(*list.folders, {"složka", "složky", "složek"}) + QStringLiteral(", ") + text;
    if (list.files > 0)
        text += QStringLiteral(" · ") + fromUtf8(Format::bytes(list.bytes));
    return text;
}

std::vector<Fact> facts(const app::PreviewSubject& subject, const app::PreviewContent& content) {
    const auto& item = subject.item;
    std::vector<Fact> facts{{QStringLiteral("Druh"), kindTitle(item.view())}};
    if (!item.isFolderLike() && !isSizeUnknown(subject.archive, item.view()))
        facts.emplace_back(QStringLiteral("Velikost"), fromUtf8(Format::bytes(item.size)));
    if (auto fact = factOf(content); !fact.first.isEmpty())
        facts.push_back(std::move(fact));
    if (auto date = czechDate(item.modified, DateDetail::seconds); !date.isEmpty())
        facts.emplace_back(QStringLiteral("Změněno"), std::move(date));
    return facts;
}

} // namespace fennik::ui::PreviewTexts
