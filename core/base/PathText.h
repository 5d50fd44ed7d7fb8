#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace fennik {

/// The path that a "file" URL means (RFC 8089): absolute bytes, percent signs decoded, as they
/// stand otherwise. None where the text is no such URL: another host than none or "localhost", a
/// percent sign without two digits, an encoded "/" or NUL, a query or a fragment. Characters that
/// strictly had to be encoded, such as blanks and letters beyond ASCII, are taken as they are. The
/// scheme may be in letters of either case.
std::optional<std::string> pathOfFileUrl(std::string_view text);

/// A path as the path of such a URL: every byte but unreserved characters (RFC 3986, section 2.3)
/// and separators is a percent sign with two digits.
std::string percentEncoded(std::string_view path);

/// The text that stands for a path where only valid UTF-8 can be kept. A path that is valid UTF-8
/// is its own text; any other is a "file://" URL with percent signs. `path` is absolute bytes, so
/// that the two forms cannot be taken for each other.
std::string storedPath(std::string_view path);

/// The text that can stand in a field for a path, and means it when it is read back: the path, or
/// its "file://" URL where white space at an end, control characters or bytes that are not UTF-8
/// would be lost. `path` is absolute bytes.
std::string typeablePath(std::string_view path);

/// The absolute path that `storedPath` made `text` of, without a trailing separator. None for
/// anything that is no absolute path: empty, relative, with a NUL, a URL that does not parse.
std::optional<std::string> pathFromStored(std::string_view text);

/// The same for the name of one item, which contains no "/": a name that is not valid UTF-8 is kept
/// as the URL of an item of that name in the root folder.
std::string storedName(std::string_view name);
std::optional<std::string> nameFromStored(std::string_view text);

} // namespace fennik
