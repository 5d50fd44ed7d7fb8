#include "core/archives/NameCharset.h"

#include "core/base/Utf8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <vector>

namespace fennik::test {

namespace {

/// Names as people give them, each with letters beyond ASCII.
const std::vector<std::string> czechNames = {
    "Příloha č. 1.pdf",
    "Faktura za říjen.pdf",
    "Výroční zpráva 2009.doc",
    "žádost o dovolenou.doc",
    "Smlouva o dílo – dodatek.docx",
    "ZÁPIS Z PORADY.TXT",
    "Životopis.doc",
    "Účetnictví",
    "fotky z léta",
    "Vánoce u babičky",
    "Šumava 2011",
    "výlet na Říp",
    "Petrova svatební řeč.txt",
    "příjmy a výdaje.xls",
    "rozpočet školy.xls",
    "Řízení projektů.ppt",
    "diplomová práce - závěr.doc",
    "Ďábelské ódy.mp3",
    "Žluťoučký kůň.txt",
    "PŘEHLED ČERPÁNÍ.XLS",
    "čtení.txt",
    "Přihláška na tábor.rtf",
    "jídelníček.doc",
    "kniha hostů",
    "Domácí úkol z matematiky.doc",
    "Nová složka",
    "Kopie – ceník.xls",
    "Dům a zahrada",
    "Běžecké lyžování",
    "Sníh.jpg",
    "Plná moc – Dvořák.pdf",
    "úvod.tex",
    "dítě.jpg",
    "Město Žďár",
    "Týdenní plán.doc",
    "ŽÁCI",
    "vyúčtování služeb 2003.pdf",
    "Praha - Hlavní nádraží.jpg",
    "Jiří Novák.vcf",
    "Böhmův dopis.txt",
};

std::string encoded(std::string_view text, const NameCharset& charset) {
    std::string bytes;
    for (std::size_t position = 0; position < text.size();) {
        const auto character = Utf8::next(text, position);
        const auto& known = charset.characters();
        const auto* const found = std::ranges::find(known, character);
        if (character < 0x80)
            bytes += static_cast<char>(character);
        else if (found != known.end())
            bytes += static_cast<char>(0x80 + (found - known.begin()));
        else
            bytes += '-'; // as dashes are written where there are none
    }
    return bytes;
}

std::string guessed(const std::vector<std::string>& names) {
    const std::vector<std::string_view> views(names.begin(), names.end());
    return NameCharset::guess(views);
}

std::vector<std::string> allEncoded(const std::vector<std::string>& names,
                                    const NameCharset& charset) {
    std::vector<std::string> result;
    for (const auto& name : names)
        result.push_back(encoded(name, charset));
    return result;
}

} // namespace

TEST(NameCharsetTest, findsTheSetOfCzechNamesTogether) {
    for (const std::string set : {"windows-1250", "IBM852", "ISO-8859-2"})
        EXPECT_EQ(guessed(allEncoded(czechNames, NameCharset(set))), set);
}

TEST(NameCharsetTest, readsEverySingleCzechName) {
    for (const std::string set : {"windows-1250", "IBM852", "ISO-8859-2"}) {
        const NameCharset charset(set);
        for (const auto& bytes : allEncoded(czechNames, charset))
            EXPECT_EQ(NameCharset(guessed({bytes})).decoded(bytes), charset.decoded(bytes)) << set;
    }
}

TEST(NameCharsetTest, findsTheSetOfRussianNames) {
    const std::vector<std::string> names = {"Документы", "Новая папка/Отчёт за год.doc",
                                            "фото с моря.jpg"};
    for (const std::string set : {"IBM866", "windows-1251", "KOI8-R"})
        EXPECT_EQ(guessed(allEncoded(names, NameCharset(set))), set);
}

TEST(NameCharsetTest, keepsEveryTwoNamesApart) {
    // 0x81, 0x83 and others mean nothing in windows-1250.
    for (const std::string set : {"windows-1250", "IBM852", "ISO-8859-2", "IBM866", "no such set",
                                  "UTF-16", "IBM037", "Shift_JIS"}) {
        const NameCharset charset(set);
        std::set<std::string> decoded;
        for (int first = 0x80; first <= 0xFF; ++first)
            for (const char second : {'\x80', '\x81', '\xFF', 'A', '8'}) {
                const auto text =
                    charset.decoded(std::string{static_cast<char>(first), second, '\xFF'});
                EXPECT_TRUE(Utf8::isValid(text));
                EXPECT_FALSE(text.contains('/'));
                decoded.insert(text);
            }
        EXPECT_EQ(decoded.size(), 128 * 5) << set;
    }
}

TEST(NameCharsetTest, decodesOnlyTheComponentsThatNeedIt) {
    const NameCharset charset("windows-1250");
    EXPECT_EQ(charset.decoded("\x8Elu\x9Dou\xE8k\xFD/k\xF9\xF2.txt"), "Žluťoučký/kůň.txt");
    EXPECT_EQ(charset.decoded("Žluťoučký/k\xF9\xF2.txt"), "Žluťoučký/kůň.txt");
    EXPECT_EQ(charset.decoded("a\x81/b"), "a\uFFFD81/b");
}

} // namespace fennik::test
