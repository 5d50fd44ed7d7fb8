#include "core/base/FileLists.h"

#include "core/base/FileUrl.h"
#include "core/base/PathText.h"

#include <optional>
#include <utility>

namespace fennik::FileLists {

namespace {

/// RFC 2483.
constexpr std::string_view uriList = "text/uri-list";
constexpr std::string_view plainText = "text/plain";
/// A word for the intent in the first line, then URLs.
constexpr std::string_view copiedFiles = "x-special/gnome-copied-files";
/// "1" where the URLs beside it are to be moved.
constexpr std::string_view cutSelection = "application/x-kde-cutselection";

/// The lines without what ends them, be it a line feed alone or not; empty ones left out.
std::vector<std::string_view> lines(std::string_view text) {
    std::vector<std::string_view> result;
    while (!text.empty()) {
        const auto end = text.find_first_of(std::string_view("\r\n\0", 3));
        if (end != 0)
            result.push_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return result;
}

/// The paths of the lines that are URLs of files.
std::vector<std::string> pathsOfUrls(const std::vector<std::string_view>& urls) {
    std::vector<std::string> paths;
    for (const auto url : urls) {
        if (const auto path = pathOfFileUrl(url))
            paths.push_back(FileUrl(*path).path());
    }
    return paths;
}

std::vector<std::string> pathsOfText(std::string_view text) {
    std::vector<std::string> paths;
    for (const auto line : lines(text)) {
        const auto path =
            line.starts_with('/') ? std::optional(std::string(line)) : pathOfFileUrl(line);
        if (!path)
            return {};
        paths.push_back(FileUrl(*path).path());
    }
    return paths;
}

} // namespace

std::vector<Format> write(const Files& files) {
    const bool isMove = files.intent == Intent::move;
    std::string urls;
    std::string copied = isMove ? "cut" : "copy";
    std::string plain;
    for (const auto& path : files.paths) {
        const auto url = "file://" + percentEncoded(path);
        urls += url + "\r\n";
        copied += '\n' + url;
        plain += (plain.empty() ? "" : "\n") + path;
    }
    return {{uriList, std::move(urls)},
            {copiedFiles, std::move(copied)},
            {cutSelection, isMove ? "1" : "0"},
            {plainText, std::move(plain)}};
}

Files read(const std::function<std::string(std::string_view type)>& contentOf) {
    const auto intentOf = [](bool isMove) { return isMove ? Intent::move : Intent::copy; };
    const auto copied = contentOf(copiedFiles);
    if (auto paths = pathsOfUrls(lines(copied)); !paths.empty())
        return {std::move(paths), intentOf(lines(copied).front() == "cut")};
    const auto urls = contentOf(uriList);
    if (!urls.empty())
        return {pathsOfUrls(lines(urls)), intentOf(contentOf(cutSelection).starts_with('1'))};
    return {pathsOfText(contentOf(plainText)), Intent::copy};
}

} // namespace fennik::FileLists
