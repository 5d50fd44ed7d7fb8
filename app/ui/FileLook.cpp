#include "app/ui/FileLook.h"

#include "app/ui/Text.h"
#include "core/archives/ArchiveSupport.h"
#include "core/base/AsciiText.h"

#include <array>
#include <initializer_list>
#include <string_view>
#include <unordered_map>

namespace fennik::ui {

namespace {

struct LookWords {
    const char* icon;
    const char* kind;
};

constexpr std::array<LookWords, 13> words{{
    {"up", "nadřazená složka"},
    {"folder", "složka"},
    {"package", "balíček"},
    {"archive", "archiv"},
    {"image", "obrázek"},
    {"audio", "zvuk"},
    {"video", "video"},
    {"pdf", "dokument PDF"},
    {"sheet", "tabulka"},
    {"text", "textový dokument"},
    {"code", "zdrojový kód"},
    {"file", "soubor"},
    {"other", "zvláštní soubor"},
}};

const LookWords& wordsOf(FileLook look) {
    return words[static_cast<std::size_t>(look)];
}

using LooksByExtension = std::unordered_map<std::string_view, FileLook>;

LooksByExtension looksByExtension() {
    LooksByExtension looks;
    const auto add = [&looks](FileLook look, std::initializer_list<std::string_view> extensions) {
        for (const auto extension : extensions)
            looks.emplace(extension, look);
    };
    add(FileLook::image,
        {"png", "jpg", "jpeg", "gif", "webp", "heic", "svg", "tif", "tiff", "bmp", "avif", "dng"});
    add(FileLook::audio, {"mp3", "m4a", "flac", "wav", "ogg", "opus"});
    add(FileLook::video, {"mp4", "mkv", "mov", "avi", "webm"});
    add(FileLook::pdf, {"pdf"});
    add(FileLook::sheet, {"xlsx", "xls", "ods", "csv", "numbers"});
    add(FileLook::text, {"txt", "md", "rtf", "log", "doc", "docx", "odt", "pages"});
    add(FileLook::code,
        {"c",  "h",     "cpp", "hpp", "py",   "js",   "ts",  "json", "xml", "html", "css",
         "sh", "swift", "rs",  "go",  "java", "yaml", "yml", "toml", "sql", "cmake"});
    return looks;
}

FileLook lookOfExtension(std::string_view extension) {
    static const auto looks = looksByExtension();
    const auto found = looks.find(asciiLowered(extension));
    return found == looks.end() ? FileLook::file : found->second;
}

} // namespace

FileLook lookOf(const FileItemView& item) {
    if (item.isParentLink)
        return FileLook::up;
    if (item.kind == FileKind::package)
        return FileLook::package;
    if (item.isFolderLike())
        return FileLook::folder;
    if (item.kind == FileKind::other)
        return FileLook::other;
    if (ArchiveSupport::archiveExtension(item.name))
        return FileLook::archive;
    return lookOfExtension(item.fileExtension().value_or(std::string_view()));
}

QString iconName(FileLook look) {
    return QString::fromUtf8(wordsOf(look).icon);
}

QString kindTitle(const FileItemView& item) {
    constexpr qsizetype longestExtension = 8;
    auto title = kindText(item);
    title.front() = title.front().toUpper();
    const auto look = lookOf(item);
    const bool saysAll = look == FileLook::pdf || look < FileLook::archive || item.isLink();
    auto extension = shownName(item.fileExtension().value_or(std::string_view())).toUpper();
    if (const auto archive = ArchiveSupport::archiveExtension(item.name))
        extension = fromUtf8(*archive).toUpper();
    if (saysAll || extension.isEmpty() || extension.size() > longestExtension)
        return title;
    if (extension == QStringLiteral("JPG"))
        extension = QStringLiteral("JPEG");
    return title + QLatin1Char(' ') + extension;
}

QString kindText(const FileItemView& item) {
    if (!item.isLink())
        return QString::fromUtf8(wordsOf(lookOf(item)).kind);
    return item.linksToDirectory ? QStringLiteral("odkaz na složku") : QStringLiteral("odkaz");
}

} // namespace fennik::ui
