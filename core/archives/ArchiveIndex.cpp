#include "core/archives/ArchiveIndex.h"

#include "core/archives/EntryTree.h"
#include "core/archives/FormatLabel.h"
#include "core/archives/NameCharset.h"

#include <utility>

namespace fennik {

struct ArchiveIndex::Tree {
    FileUrl url;
    ArchiveFacts facts;
    std::string charset;
    EntryTree entries;
    std::int64_t refused = 0;
};

ArchiveIndex::ArchiveIndex(std::unique_ptr<const Tree> tree) : tree_(std::move(tree)) {}

ArchiveIndex::~ArchiveIndex() = default;

EntryStream::Result<std::shared_ptr<const ArchiveIndex>> ArchiveIndex::read(EntryStream& stream,
                                                                            const FileUrl& url) {
    auto tree = std::make_unique<Tree>();
    tree->url = url;
    bool hasForeignNames = false;
    for (;;) {
        auto met = stream.next();
        if (!met)
            return std::unexpected(std::move(met.error()));
        const auto& next = *met;
        if (!next)
            break;
        const auto& entry = *next;
        hasForeignNames = hasForeignNames || (entry.hasForeignName && !entry.isRefused);
        if (entry.isRefused) {
            ++tree->refused;
        } else if (!tree->entries.add(entry.entry)) {
            return std::unexpected(ArchiveError{ArchiveError::Case::cannotOpen,
                                                "je v něm víc položek, než se vejde do paměti"});
        }
    }
    tree->facts = stream.facts();
    if (hasForeignNames) {
        tree->charset = NameCharset::guess(tree->entries.foreignNames());
        tree->entries = tree->entries.decoded(NameCharset(tree->charset));
    }
    tree->entries.finish(tree->facts.fileModified);
    return std::shared_ptr<const ArchiveIndex>(new ArchiveIndex(std::move(tree)));
}

const FileUrl& ArchiveIndex::url() const {
    return tree_->url;
}

const ArchiveFacts& ArchiveIndex::facts() const {
    return tree_->facts;
}

const std::string& ArchiveIndex::charset() const {
    return tree_->charset;
}

std::optional<ArchiveEntry> ArchiveIndex::find(std::string_view path) const {
    return tree_->entries.find(path);
}

std::vector<std::string_view> ArchiveIndex::children(std::string_view folder) const {
    return tree_->entries.children(folder);
}

std::int64_t ArchiveIndex::folderSize(std::string_view folder) const {
    return tree_->entries.folderSize(folder);
}

bool ArchiveIndex::hasEncryptedEntries() const {
    return tree_->entries.hasEncryptedEntries();
}

std::int64_t ArchiveIndex::fileCount() const {
    return tree_->entries.fileCount();
}

std::int64_t ArchiveIndex::totalSize() const {
    return tree_->entries.folderSize({});
}

std::int64_t ArchiveIndex::refusedCount() const {
    return tree_->refused;
}

bool ArchiveIndex::isZip() const {
    return tree_->facts.formatFamily == ArchiveFamily::zip;
}

std::string ArchiveIndex::formatLabel() const {
    return fennik::formatLabel(tree_->facts, tree_->url);
}

} // namespace fennik
