#pragma once

#include "app/model/ArchiveBrowse.h"
#include "app/model/PendingConflict.h"
#include "app/model/PendingPassword.h"
#include "core/archives/PackOptions.h"
#include "core/base/FileUrl.h"
#include "core/listing/FileItem.h"
#include "core/listing/MarkState.h"
#include "core/operations/TransferRequest.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace fennik::app {

/// Asks where items are to be copied or moved.
struct TransferDialog {
    TransferKind kind = TransferKind::copy;
    std::vector<FileUrl> sources = {};
    std::string target = {}; ///< as typed so far: a path, maybe a relative one, or a URL
    FileUrl from = {};       ///< the folder of the sources, from where relative paths begin
    std::int64_t knownBytes = 0;
    bool hasUnsizedFolders = false; ///< `knownBytes` is only a part of the whole
};

/// Asks for the name of a new folder.
struct NewFolderDialog {
    FileUrl folder = {};
    std::string name = {}; ///< as typed so far
};

/// Asks whether items are to go to the trash.
struct TrashDialog {
    std::vector<FileUrl> items = {};
    std::int64_t knownBytes = 0;
    bool hasUnsizedFolders = false;
};

/// Asks whether so many items are to be copied or moved into a folder.
struct PasteDialog {
    enum class Origin { clipboard, drop };
    TransferKind kind = TransferKind::copy;
    std::vector<FileUrl> sources = {};
    FileUrl target = {};
    Origin origin = Origin::clipboard;
};

/// Asks what is to become of an item whose name is taken.
struct ConflictDialog {
    std::shared_ptr<PendingConflict> pending = {}; ///< never null
};

/// Asks for masks, to mark or unmark the items that match.
struct MaskDialog {
    Marking marking = Marking::mark;
    std::optional<std::string> text = {}; ///< as typed so far; none before the first key
};

/// What the user has chosen for a new archive.
struct PackAnswer {
    enum class Place { here, other };
    std::string name = {}; ///< with its extension, in bytes
    Place place = Place::here;
    PackOptions options = {};
};

/// Asks what archive items are to be packed into.
struct PackDialog {
    std::vector<FileUrl> sources = {};
    FileUrl here = {};                 ///< the folder of the sources
    std::optional<FileUrl> other = {}; ///< that of the other panel, where it is another one
    PackAnswer answer = {};            ///< as chosen so far
    std::int64_t knownBytes = 0;
    bool hasUnsizedFolders = false; ///< `knownBytes` is only a part of the whole
};

/// Asks where archives, or entries of an open one, are to be unpacked.
struct ExtractDialog {
    std::vector<FileUrl> archives = {};
    std::shared_ptr<const ArchiveBrowse> browse = {}; ///< null: the archives are taken whole
    std::vector<std::string> selection = {};          ///< paths of entries of `browse`
    std::string target = {}; ///< as typed so far: a path, maybe a relative one, or a URL
    FileUrl from = {};       ///< the folder of the archives, from where relative paths begin
    std::int64_t knownBytes = 0;
    bool ownFolder = false; ///< each archive goes into a folder of its own
};

/// Asks for the password of an archive.
struct PasswordDialog {
    std::shared_ptr<PendingPassword> pending = {}; ///< never null
};

/// Tells what is known of one item.
struct InfoDialog {
    FileItem item = {};
    std::optional<ArchiveBrowse> archive = {}; ///< that the item lies in
};

/// The one modal dialog on show, with what it needs to know.
using Dialog =
    std::variant<TransferDialog, NewFolderDialog, TrashDialog, PasteDialog, ConflictDialog,
                 PackDialog, ExtractDialog, PasswordDialog, MaskDialog, InfoDialog>;

/// What will come of the text in a dialog.
struct Outcome {
    enum class Kind {
        none,     ///< nothing to say, or not known yet
        existing, ///< the items go into a folder that is there
        creates,  ///< a folder is made
        renames,  ///< the one item gets another name
        refused,  ///< nothing would be done, and the sentence says why
    };
    Kind kind = Kind::none;
    std::string sentence = {};
    std::optional<std::int64_t> freeSpace = {}; ///< bytes at the target
    friend bool operator==(const Outcome&, const Outcome&) = default;
};

} // namespace fennik::app
