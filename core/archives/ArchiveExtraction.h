#pragma once

#include "core/archives/ArchiveExtractor.h"
#include "core/archives/EntrySelection.h"
#include "core/archives/EntryWriter.h"
#include "core/archives/ExtractionFolders.h"
#include "core/archives/FileCompleter.h"
#include "core/archives/FullDisk.h"
#include "core/archives/NamePlacing.h"
#include "core/archives/UnlockingStream.h"
#include "core/operations/FolderNode.h"
#include "core/operations/TransferLedger.h"
#include "core/operations/TransferPlaces.h"

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace fennik {

/// Takes entries out of one archive: the current pair of the ledger.
class ArchiveExtraction {
public:
    /// All of it outlives the extraction.
    struct Surroundings {
        const ArchiveOpener& archives;
        const AskPassword& askPassword;
        TransferLedger& ledger;
        OpenFolders& folders;
        TransferPlaces& targets;
    };

    ArchiveExtraction(const Surroundings& surroundings, const Extraction& what);
    ArchiveExtraction(const ArchiveExtraction&) = delete;
    ArchiveExtraction& operator=(const ArchiveExtraction&) = delete;

    /// False where the job was stopped before everything had been gone through.
    bool run();
    /// What each of the selected paths came to, in a run that has ended.
    std::vector<PairOutcome> outcomes() const;

private:
    /// A file that was written, so that it can get another name.
    struct WrittenFile {
        FolderNode::Pointer folder = {};
        std::string name = {};
        FileIdentity identity = {};
    };
    /// What waits until all files are there.
    struct Later {
        ArchiveEntry entry = {};
        std::size_t base = 0;
    };

    bool goesOn();
    /// False where there is nothing more to do.
    bool prepare();
    /// The entries whose data is going to be read; none: all.
    std::optional<std::vector<std::string>> wanted() const;
    bool isAsSeen() const;

    /// Waits for the files that are being completed.
    void completeAll();
    void noticeFullDisk();

    void takeEntries(EntryStream::Result<std::optional<StreamEntry>> met);
    void take(const StreamEntry& met);
    /// An entry that was not selected, where another name of it was.
    void takeForLink(const StreamEntry& met);
    void takeFile(const StreamEntry& met, std::size_t base);
    /// Read before anything gives way to the entry. None after a failure, which has been told.
    std::optional<EntryStream::Block> firstData(const ArchiveEntry& entry);
    void writeFile(const StreamEntry& met, std::size_t base, const EntryStream::Block& first);
    /// Now or later, as the file allows.
    NamePlacing::Made complete(const ArchiveEntry& entry, const WrittenFile& file,
                               EntryWriter::Filled filled);
    void account(const ArchiveEntry& entry, const WrittenFile& file, const FileCompleter::End& end);
    void takeFolder(const ArchiveEntry& entry, std::size_t base);
    /// Writes the file that the link is another name of, where its data comes only now.
    void takeDataOfLink(const ArchiveEntry& entry);
    void takeWhatWaits();
    /// It was written in the place of the entry that it is another name of.
    bool isTaken(const ArchiveEntry& link) const;
    void takeLink(const ArchiveEntry& entry, std::size_t base);
    void refuse(const ArchiveEntry& entry);

    /// The folder that is to hold the entry; null where it is not to be written.
    ExtractionFolders::Folder* folderFor(const ArchiveEntry& entry, std::size_t base);
    bool isPassedOver(const ArchiveEntry& entry, std::size_t base);
    NamePlacing::Outcome place(const ArchiveEntry& entry, const FolderNode::Pointer& folder,
                               const NamePlacing::Make& make);
    NamePlacing::Made makeLink(const ArchiveEntry& entry, const FolderNode::Pointer& folder,
                               const OpenFolder& held, const std::string& name);
    OpenFolder::Result<void> makeHardLink(const WrittenFile& file, const OpenFolder& held,
                                          const std::string& name);

    /// The folders, which are made when they are first needed; null where that fails.
    ExtractionFolders* folders();
    bool makeTop();
    std::optional<std::string> ownFolderName() const;
    NameClash::Newcomer newcomer(const ArchiveEntry& entry) const;
    NameClash::Newcomer newcomer(const std::string& folder) const;
    std::optional<std::string> objection(const FileStatus& there) const;
    void fail(const ArchiveError& error);
    /// What fails in `work` is the fault of the entry at `path`.
    template <class Work>
    void charge(std::string_view path, Work work);

    Surroundings around_;
    TransferLedger& ledger_;
    OperationContext& context_;
    const Extraction& what_;
    std::string password_;
    std::shared_ptr<const ArchiveIndex> index_;
    const std::size_t failuresBefore_; ///< of other archives
    EntrySelection selection_;
    std::unique_ptr<UnlockingStream> stream_ = {};
    NamePlacing placing_;
    std::unique_ptr<ExtractionFolders> folders_ = {};
    /// By their paths in the archive; empty where the archive can have no hard links.
    std::unordered_map<std::string, WrittenFile> written_ = {};
    std::vector<Later> links_ = {};
    /// Selected hard links, by what they are other names of, where that was not selected.
    std::map<std::string, ArchiveEntry> linksOut_ = {};
    /// Files without data that may get some yet, by their paths.
    std::map<std::string, Later> empty_ = {};
    FullDisk disk_ = {};
    FileCompleter completer_ = {};
    std::unordered_set<std::string> failedPaths_ = {}; ///< of those that were selected
    std::size_t charged_ = 0;                          ///< failures that are the fault of one entry
    int refused_ = 0;
    bool isStopped_ = false; ///< by the job
    bool isOver_ = false;    ///< nothing more can be taken
    bool isFullTold_ = false;
};

} // namespace fennik
