#include "core/listing/PathCompleter.h"

#include "core/base/FoldedText.h"
#include "core/base/PathText.h"
#include "core/base/WhiteSpace.h"
#include "core/listing/DirectoryReader.h"
#include "core/listing/LinkRoutes.h"
#include "core/listing/PackageTypes.h"

#include <algorithm>
#include <memory>
#include <unicode/coll.h>

namespace fennik::PathCompleter {

namespace {

/// Bytes that are in the order of the names: Czech, without regard to case, digits as numbers.
std::string collationKey(std::string_view name) {
    // Made once, as loading the rules takes longer than using them; safe on several threads.
    static const std::unique_ptr<const icu::Collator> collator = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::Collator> made(
            icu::Collator::createInstance(icu::Locale("cs"), status));
        if (U_SUCCESS(status)) {
            made->setStrength(icu::Collator::SECONDARY);
            made->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
        }
        return U_SUCCESS(status) ? std::move(made) : nullptr;
    }();
    if (collator == nullptr)
        return std::string(name);
    const auto text = icu::UnicodeString::fromUTF8(
        icu::StringPiece(name.data(), static_cast<int32_t>(name.size())));
    constexpr int32_t usualLength = 128;
    std::string key(usualLength, '\0');
    const auto fill = [&] {
        return collator->getSortKey(text, reinterpret_cast<std::uint8_t*>(key.data()),
                                    static_cast<int32_t>(key.size()));
    };
    const auto length = fill();
    key.resize(static_cast<std::size_t>(length));
    if (length > usualLength)
        fill();
    return key;
}

void sortAsShown(std::vector<std::string>& names) {
    struct Keyed {
        std::string key;
        std::string name;
    };
    std::vector<Keyed> keyed;
    keyed.reserve(names.size());
    for (auto& name : names) {
        auto key = collationKey(name);
        keyed.push_back({std::move(key), std::move(name)});
    }
    std::ranges::sort(keyed, [](const Keyed& a, const Keyed& b) {
        const auto order = a.key.compare(b.key);
        return order != 0 ? order < 0 : a.name < b.name;
    });
    std::ranges::transform(keyed, names.begin(), [](Keyed& item) { return std::move(item.name); });
}

/// `path`, which may be that of the root, with a separator at its end.
std::string closed(const std::string& path) {
    return path.ends_with('/') ? path : path + '/';
}

} // namespace

std::string normalise(std::string_view text, const std::optional<FileUrl>& base,
                      const FileUrl& home) {
    text = trimmed(text);
    std::string path(text);
    if (text.starts_with("file://"))
        path = pathOfFileUrl(text).value_or(path);
    if (path == "~")
        return home.path();
    if (path.starts_with("~/"))
        return closed(home.path()) + path.substr(2);
    if (!path.empty() && !path.starts_with('/') && base)
        return closed(base->path()) + path;
    return path;
}

std::vector<std::string> suggestions(const FileSystem& files, std::string_view text,
                                     const std::optional<FileUrl>& base, const FileUrl& home,
                                     IncludeHidden includeHidden, Volumes::Source mounted) {
    auto path = normalise(text, base, home);
    if (trimmed(text) == "~")
        path = closed(path);
    if (!path.starts_with('/') || path.contains('\0'))
        return {};
    const auto nameBegin = path.rfind('/') + 1;
    const FileUrl folder(path.substr(0, nameBegin));
    const auto typed = std::string_view(path).substr(nameBegin);
    const bool withHidden = includeHidden == IncludeHidden::yes || typed.starts_with('.');
    const auto prefix = foldedText(typed);

    std::vector<std::string> names;
    std::vector<std::string> links;
    const auto collect = [&](const DirectoryReader::Entry& entry) {
        const bool isFolder =
            entry.kind == FileKind::directory && !PackageTypes::isPackageName(entry.name);
        if (!isFolder && entry.kind != FileKind::symlink)
            return;
        if ((!withHidden && entry.name.starts_with('.')) || !lengthOfPrefix(entry.name, prefix))
            return;
        (isFolder ? names : links).emplace_back(entry.name);
    };
    if (!DirectoryReader::read(files, folder, collect))
        return {};
    const auto below = closed(folder.path());
    LinkRoutes routes(files, folder, std::move(mounted));
    for (auto& name : links) {
        const auto isFolder = [&files, path = below + name] {
            const auto status = files.status(path, FollowLinks::yes);
            return status && status->type == FileType::directory;
        };
        if (routes.remoteVolume(name) || isFolder())
            names.push_back(std::move(name));
    }
    sortAsShown(names);
    for (auto& name : names)
        name.insert(0, below);
    return names;
}

} // namespace fennik::PathCompleter
