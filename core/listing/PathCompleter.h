#pragma once

#include "core/base/FileUrl.h"
#include "core/platform/FileSystem.h"
#include "core/platform/Volumes.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Folders that complete what was typed into a path field. All text is bytes, so that any name can
/// come back as it is.
namespace fennik::PathCompleter {

/// Whether suggestions go beyond the names without a leading dot.
enum class IncludeHidden { no, yes };

/// The path that `text` means, without the white space around it: a "file://" URL, a path below
/// `home` that begins with "~", an absolute path, or one below `base`. Empty for no text; relative
/// only for a relative text without a base. A URL that cannot be read is text like any other. Asks
/// nothing of the disk.
std::string normalise(std::string_view text, const std::optional<FileUrl>& base,
                      const FileUrl& home);

/// The absolute paths of the folders, and of the links to folders, that `text` may be the begin of:
/// in the folder of its last component those whose names begin with it, without regard to case and
/// diacritics; all of them after a "/" and for "~" alone. Hidden ones are always among them where
/// the component itself begins with a dot. Czech order, 2 before 10. None for a folder that cannot
/// be read. Waits for the disk: called on workers, several at once. Beside the listing, it asks the
/// disk only about links whose names fit, and suggests those to remote volumes unasked.
std::vector<std::string> suggestions(const FileSystem& files, std::string_view text,
                                     const std::optional<FileUrl>& base, const FileUrl& home,
                                     IncludeHidden includeHidden, Volumes::Source mounted = {});

} // namespace fennik::PathCompleter
