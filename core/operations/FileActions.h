#pragma once

#include "core/base/FileUrl.h"
#include "core/operations/TrashProvider.h"
#include "core/operations/UndoJournal.h"

#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace fennik::FileActions {

/// Why an action failed, as a sentence for the user. Nothing has changed on the disk then.
struct Failure {
    std::string sentence = {};
    const std::string& message() const { return sentence; }
};

/// The name that `text` stands for. Asks no disk.
std::expected<std::string, Failure> validateName(std::string_view text);

/// Gives `item` another name in its folder; never replaces anything. The same name does nothing and
/// is not recorded. Returns where it lies now.
std::expected<FileUrl, Failure> rename(const FileUrl& item, std::string_view name,
                                       UndoJournal& journal);

/// The folder that `name` means in `directory`; "/" separates levels. Asks no disk.
std::expected<FileUrl, Failure> folderNamed(const FileUrl& directory, std::string_view name);

/// Makes the folder that `name` means in `directory`. Returns the innermost one.
std::expected<FileUrl, Failure> newFolder(const FileUrl& directory, std::string_view name,
                                          UndoJournal& journal);

/// What became of the items that were to go to the trash.
struct Trashing {
    std::vector<FileUrl> trashed = {};
    /// A sentence for each item that stayed where it was.
    std::vector<std::string> failures = {};
};
/// One entry is recorded for all that went.
Trashing trash(const std::vector<FileUrl>& items, const TrashProvider& trash, UndoJournal& journal);

} // namespace fennik::FileActions
