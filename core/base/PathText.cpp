#include "core/base/PathText.h"

#include "core/base/AsciiText.h"
#include "core/base/DisplayText.h"
#include "core/base/FileUrl.h"
#include "core/base/HexDigits.h"
#include "core/base/Utf8.h"
#include "core/base/WhiteSpace.h"

#include <cstdint>

namespace fennik {

namespace {

constexpr std::string_view scheme = "file:";

/// RFC 3986, section 2.3, and the separator.
bool standsForItself(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("-._~/").contains(c);
}

std::optional<std::string> percentDecoded(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result += text[i];
            continue;
        }
        const auto byte = hexByte(text.substr(i + 1));
        if (!byte || *byte == '/')
            return std::nullopt;
        result += static_cast<char>(*byte);
        i += 2;
    }
    return result;
}

} // namespace

std::optional<std::string> pathOfFileUrl(std::string_view text) {
    if (asciiLowered(text.substr(0, scheme.size())) != scheme)
        return std::nullopt;
    text.remove_prefix(scheme.size());
    if (text.starts_with("//")) {
        text.remove_prefix(2);
        const auto slash = text.find('/');
        if (slash == std::string_view::npos)
            return std::nullopt;
        if (slash != 0 && asciiLowered(text.substr(0, slash)) != "localhost")
            return std::nullopt;
        text.remove_prefix(slash);
    }
    if (!text.starts_with('/') || text.find_first_of("?#") != std::string_view::npos)
        return std::nullopt;
    auto path = percentDecoded(text);
    if (path && path->contains('\0'))
        return std::nullopt;
    return path;
}

std::string percentEncoded(std::string_view path) {
    std::string text;
    for (const char c : path) {
        if (standsForItself(c))
            text += c;
        else
            text += '%' + hexDigits(static_cast<std::uint8_t>(c), HexCase::upper);
    }
    return text;
}

std::string storedPath(std::string_view path) {
    return Utf8::isValid(path) ? std::string(path) : "file://" + percentEncoded(path);
}

std::string typeablePath(std::string_view path) {
    const bool isAsShown = displayText(path) == path && trimmed(path) == path;
    return isAsShown ? std::string(path) : "file://" + percentEncoded(path);
}

std::optional<std::string> pathFromStored(std::string_view text) {
    const auto path = text.starts_with('/') ? std::string(text) : pathOfFileUrl(text);
    if (!path || path->contains('\0'))
        return std::nullopt;
    return FileUrl(*path).path();
}

std::string storedName(std::string_view name) {
    return Utf8::isValid(name) ? std::string(name) : storedPath('/' + std::string(name));
}

std::optional<std::string> nameFromStored(std::string_view text) {
    auto name = std::string(text);
    if (text.contains('/')) {
        const auto path = pathOfFileUrl(text);
        if (!path)
            return std::nullopt;
        name = path->substr(1);
    }
    if (name.empty() || name.contains('/') || name.contains('\0'))
        return std::nullopt;
    return name;
}

} // namespace fennik
