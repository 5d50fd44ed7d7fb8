#include "core/archives/ArchiveReader.h"

#include "core/archives/ArchiveLocale.h"
#include "core/archives/ArchiveSupport.h"
#include "core/archives/EntryPath.h"
#include "core/archives/FormatLabel.h"
#include "core/archives/NameCharset.h"
#include "core/archives/ZipEncryption.h"
#include "core/base/CurrentDate.h"
#include "core/base/DisplayText.h"
#include "core/base/Utf8.h"
#include "core/platform/posix/Descriptor.h"
#include "core/platform/posix/PosixCalls.h"

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <iterator>
#include <unistd.h>
#include <utility>
#include <vector>

namespace fennik {

namespace {

template <class T>
using Result = EntryStream::Result<T>;

/// Blocks grow while an archive is read in one piece. After a long jump the next header may be all
/// that is needed.
constexpr std::size_t smallestBlock = 16U << 10U;
constexpr std::size_t largestBlock = 128U << 10U;
/// How often the library may come back without having done anything.
constexpr int patience = 1000;
/// Bytes of a path that cannot be taken, for the eye.
constexpr std::size_t shownPath = 200;
constexpr std::uint32_t familyMask = 0xFF0000;
constexpr std::uint16_t permissionMask = 07777;

/// The file of an archive as the library reads it. It has its own position, whoever else has the
/// same descriptor.
class ArchiveFile {
public:
    ArchiveFile(int descriptor, IsCancelled isCancelled)
        : descriptor_(descriptor), isCancelled_(std::move(isCancelled)), buffer_(largestBlock) {}

    /// None where it is a regular file.
    std::optional<ArchiveError> examine(ArchiveFacts& facts) {
        const auto status = statusOf(descriptor_.number());
        if (!status)
            return ArchiveError{ArchiveError::Case::cannotOpen, status.error().reason()};
        if (status->type != FileType::regular)
            return ArchiveError{ArchiveError::Case::cannotOpen, "není to obyčejný soubor"};
        size_ = status->size;
        facts.fileSize = size_;
        facts.fileModified = status->modified;
        return std::nullopt;
    }

    int descriptor() const { return descriptor_.number(); }

    bool isCancelled() {
        wasCancelled_ = wasCancelled_ || isCancelled_();
        return wasCancelled_;
    }

    la_ssize_t read(archive* reader, const void** block) {
        if (isCancelled()) {
            archive_set_error(reader, ECANCELED, "cancelled");
            return ARCHIVE_FATAL;
        }
        const auto length = retried(
            [&] { return pread(descriptor_.number(), buffer_.data(), blockSize_, position_); });
        if (length < 0) {
            const PosixError error{errno};
            archive_set_error(reader, error.code, "%s", error.reason().c_str());
            return ARCHIVE_FATAL;
        }
        position_ += length;
        blockSize_ = std::min(2 * blockSize_, largestBlock);
        *block = buffer_.data();
        return length;
    }

    /// Not beyond the end, so that the library sees where an archive was cut off.
    la_int64_t skip(la_int64_t request) {
        const auto length =
            std::clamp<la_int64_t>(request, 0, std::max<off_t>(size_ - position_, 0));
        position_ += length;
        if (length > off_t{largestBlock})
            blockSize_ = smallestBlock;
        return length;
    }

    la_int64_t seek(la_int64_t offset, int whence) {
        const off_t origin = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? position_ : size_;
        off_t place = 0;
        if (__builtin_add_overflow(origin, offset, &place) || place < 0)
            return ARCHIVE_FATAL;
        position_ = place;
        blockSize_ = smallestBlock;
        return place;
    }

private:
    Descriptor descriptor_;
    IsCancelled isCancelled_;
    std::vector<std::byte> buffer_;
    off_t size_ = 0;
    off_t position_ = 0;
    std::size_t blockSize_ = smallestBlock;
    bool wasCancelled_ = false;
};

la_ssize_t readFile(archive* reader, void* file, const void** block) {
    return static_cast<ArchiveFile*>(file)->read(reader, block);
}

la_int64_t skipInFile(archive*, void* file, la_int64_t request) {
    return static_cast<ArchiveFile*>(file)->skip(request);
}

la_int64_t seekInFile(archive*, void* file, la_int64_t offset, int whence) {
    return static_cast<ArchiveFile*>(file)->seek(offset, whence);
}

struct Freeing {
    void operator()(archive* reader) const { archive_read_free(reader); }
};

using Support = int (*)(archive*);

/// The filters that the library has itself. For the others it would start programs of the system,
/// and hand them the archive.
const std::vector<Support>& ownFilters() {
    constexpr std::array all = {
        archive_read_support_filter_bzip2, archive_read_support_filter_compress,
        archive_read_support_filter_gzip,  archive_read_support_filter_lzip,
        archive_read_support_filter_lzma,  archive_read_support_filter_xz,
        archive_read_support_filter_uu,    archive_read_support_filter_rpm,
        archive_read_support_filter_lrzip, archive_read_support_filter_lzop,
        archive_read_support_filter_grzip, archive_read_support_filter_lz4,
        archive_read_support_filter_zstd};
    static const auto own = [&] {
        const std::unique_ptr<archive, Freeing> trial(archive_read_new());
        std::vector<Support> result;
        std::ranges::copy_if(all, std::back_inserter(result), [&](Support support) {
            return trial != nullptr && support(trial.get()) == ARCHIVE_OK;
        });
        return result;
    }();
    return own;
}

std::string_view viewOf(const char* text) {
    return text == nullptr ? std::string_view() : text;
}

ArchiveEntry::Kind kindOf(archive_entry* entry) {
    const auto type = archive_entry_filetype(entry);
    if (type == AE_IFDIR)
        return ArchiveEntry::Kind::directory;
    if (archive_entry_hardlink(entry) != nullptr)
        return ArchiveEntry::Kind::hardlink;
    return type == AE_IFLNK ? ArchiveEntry::Kind::symlink : ArchiveEntry::Kind::file;
}

bool isSpecial(archive_entry* entry) {
    const auto type = archive_entry_filetype(entry);
    return type == AE_IFIFO || type == AE_IFCHR || type == AE_IFBLK || type == AE_IFSOCK;
}

Date modifiedOf(archive_entry* entry) {
    if (archive_entry_mtime_is_set(entry) == 0)
        return currentDate();
    const auto nanoseconds = std::clamp(archive_entry_mtime_nsec(entry), 0L, 999'999'999L);
    return {archive_entry_mtime(entry), static_cast<std::uint32_t>(nanoseconds)};
}

std::uint16_t modeOf(archive_entry* entry, ArchiveEntry::Kind kind) {
    const auto mode = static_cast<std::uint16_t>(archive_entry_perm(entry) & permissionMask);
    if (mode != 0)
        return mode;
    return kind == ArchiveEntry::Kind::directory ? 0755 : 0644;
}

std::string shortened(std::string_view path) {
    auto shown = displayText(path.substr(0, shownPath));
    if (path.size() > shownPath)
        shown += "…";
    return shown;
}

/// What other systems put beside the files that it belongs to.
bool isClutter(std::string_view path) {
    return path == "__MACOSX" || path.starts_with("__MACOSX/");
}

/// Raw reading takes anything for an archive.
bool saysOneFile(const FileUrl& url) {
    const auto extension = ArchiveSupport::archiveExtension(url.lastComponent());
    return extension && ArchiveSupport::isSingleStreamCompressed(*extension);
}

/// What a single compressed file is called inside: like its archive, without the last extension.
std::string nameOfContent(const FileUrl& url) {
    const auto name = url.lastComponent();
    const auto stem = name.substr(0, name.rfind('.'));
    return std::string(stem.empty() || stem == "." || stem == ".." ? name : stem);
}

} // namespace

struct ArchiveReader::State {
    State(int descriptor, ArchiveRequest archiveRequest, IsCancelled isCancelled)
        : file(descriptor, std::move(isCancelled)),
          request(std::move(archiveRequest)),
          allowsRaw(saysOneFile(request.url)) {
        if (!request.charset.empty())
            charset.emplace(request.charset);
    }

    ArchiveError lastError() {
        if (file.isCancelled())
            return {ArchiveError::Case::cancelled};
        const auto message = viewOf(archive_error_string(reader.get()));
        auto error = ArchiveError::of(displayText(message), archive_errno(reader.get()));
        // An encrypted list of entries may be no more than that to the library.
        if (message.empty() && archive_read_has_encrypted_entries(reader.get()) == 1)
            error = {ArchiveError::Case::unsupportedEncryption};
        if (error.kind == ArchiveError::Case::unsupportedEncryption)
            error.text = formatLabel(facts, request.url);
        if (error.isAboutPassword() && facts.formatFamily == ArchiveFamily::zip)
            error.encryption = zipEncryption(file.descriptor());
        return error;
    }

    std::optional<ArchiveError> open();
    Result<archive_entry*> nextHeader();
    void learnFormat();
    bool isEmptyCompressedFile() const;
    StreamEntry emptyFile() const;
    bool convert(archive_entry* met, StreamEntry& result) const;
    std::string madeUpPath() const;
    void decode(std::string& path, StreamEntry& entry) const;
    Result<Block> readBlock();

    ArchiveFile file;
    ArchiveRequest request;
    bool allowsRaw = false;
    std::optional<NameCharset> charset;
    std::unique_ptr<archive, Freeing> reader{archive_read_new()};
    ArchiveFacts facts;
    bool hasEnded = false;               ///< the library has no further entry
    std::int64_t entries = 0;            ///< met so far
    std::int64_t dataEnd = 0;            ///< in the current entry
    std::optional<ArchiveError> failure; ///< after which there is nothing more
};

std::optional<ArchiveError> ArchiveReader::State::open() {
    if (reader == nullptr)
        return ArchiveError{ArchiveError::Case::cannotOpen, PosixError{ENOMEM}.reason()};
    if (auto error = file.examine(facts))
        return error;
    for (const auto support : ownFilters())
        support(reader.get());
    archive_read_support_format_all(reader.get());
    if (allowsRaw)
        archive_read_support_format_raw(reader.get());
    if (!request.password.empty())
        archive_read_add_passphrase(reader.get(), request.password.c_str());
    archive_read_set_callback_data(reader.get(), &file);
    archive_read_set_read_callback(reader.get(), readFile);
    archive_read_set_skip_callback(reader.get(), skipInFile);
    archive_read_set_seek_callback(reader.get(), seekInFile);
    if (archive_read_open1(reader.get()) < ARCHIVE_WARN)
        return lastError();
    return std::nullopt;
}

/// None at the end.
Result<archive_entry*> ArchiveReader::State::nextHeader() {
    if (!failure && file.isCancelled())
        failure = {ArchiveError::Case::cancelled};
    if (failure)
        return std::unexpected(*failure);
    if (hasEnded)
        return nullptr;
    archive_entry* met = nullptr;
    int result = ARCHIVE_RETRY;
    for (int i = 0; i < patience && result == ARCHIVE_RETRY; ++i)
        result = archive_read_next_header(reader.get(), &met);
    if (entries == 0)
        learnFormat();
    if (result == ARCHIVE_EOF) {
        hasEnded = true;
        return nullptr;
    }
    if (result < ARCHIVE_WARN) {
        failure = lastError();
        return std::unexpected(*failure);
    }
    return met;
}

void ArchiveReader::State::learnFormat() {
    facts.formatName = displayText(viewOf(archive_format_name(reader.get())));
    facts.formatFamily = static_cast<std::uint32_t>(archive_format(reader.get())) & familyMask;
}

/// The library takes what was compressed without data for an archive without entries.
bool ArchiveReader::State::isEmptyCompressedFile() const {
    constexpr int filtersOfNone = 1;
    return allowsRaw && entries == 0 && archive_format(reader.get()) == ARCHIVE_FORMAT_EMPTY &&
           archive_filter_count(reader.get()) > filtersOfNone;
}

StreamEntry ArchiveReader::State::emptyFile() const {
    StreamEntry entry;
    entry.entry = {.modified = currentDate(), .mode = 0644};
    entry.entry.path = nameOfContent(request.url);
    decode(entry.entry.path, entry);
    return entry;
}

/// For an entry that has none of its own.
std::string ArchiveReader::State::madeUpPath() const {
    return facts.isRaw() ? nameOfContent(request.url) : "beze jména " + std::to_string(entries);
}

void ArchiveReader::State::decode(std::string& path, StreamEntry& entry) const {
    if (Utf8::isValid(path))
        return;
    if (charset)
        path = charset->decoded(path);
    else
        entry.hasForeignName = true;
}

/// False for what is passed over.
bool ArchiveReader::State::convert(archive_entry* met, StreamEntry& result) const {
    const char* name = facts.isRaw() ? nullptr : archive_entry_pathname(met);
    if (name == nullptr && !facts.isRaw())
        name = archive_entry_pathname_utf8(met);
    const auto madeUp = name == nullptr ? madeUpPath() : std::string();
    const auto written = name == nullptr ? std::string_view(madeUp) : name;
    auto path = entryPath(written);
    if (path && (path->empty() || isClutter(*path)))
        return false;
    auto& entry = result.entry;
    result.isRefused = !path;
    entry.kind = kindOf(met);
    entry.path = path ? *std::move(path) : shortened(written);
    decode(entry.path, result);
    entry.modified = modifiedOf(met);
    entry.mode = modeOf(met, entry.kind);
    entry.encrypted = archive_entry_is_data_encrypted(met) != 0;
    switch (entry.kind) {
    case ArchiveEntry::Kind::file:
        result.isSpecial = isSpecial(met);
        result.declaresSize = archive_entry_size_is_set(met) != 0 && archive_entry_size(met) >= 0;
        entry.size = result.declaresSize ? archive_entry_size(met) : 0;
        break;
    case ArchiveEntry::Kind::hardlink: {
        entry.linkTarget = entryPath(viewOf(archive_entry_hardlink(met)));
        if (entry.linkTarget)
            decode(*entry.linkTarget, result);
        result.isRefused = result.isRefused || !entry.linkTarget || entry.linkTarget->empty();
        break;
    }
    case ArchiveEntry::Kind::symlink: {
        const char* target = archive_entry_symlink(met);
        if (target == nullptr)
            target = archive_entry_symlink_utf8(met);
        if (target != nullptr)
            decode(entry.linkTarget.emplace(target), result);
        break;
    }
    case ArchiveEntry::Kind::directory:
        break;
    }
    return true;
}

Result<EntryStream::Block> ArchiveReader::State::readBlock() {
    for (int i = 0; i < patience; ++i) {
        if (!failure && file.isCancelled())
            failure = {ArchiveError::Case::cancelled};
        if (failure)
            return std::unexpected(*failure);
        if (hasEnded)
            return Block{};
        const void* bytes = nullptr;
        std::size_t size = 0;
        la_int64_t offset = 0;
        const int result = archive_read_data_block(reader.get(), &bytes, &size, &offset);
        if (result == ARCHIVE_EOF)
            return Block{.offset = std::max<std::int64_t>(offset, dataEnd)};
        // A mere warning here means wrong data: another length, or another checksum.
        if (result < ARCHIVE_OK && result != ARCHIVE_RETRY) {
            auto error = lastError();
            if (result == ARCHIVE_FATAL)
                failure = error;
            return std::unexpected(std::move(error));
        }
        if (size == 0)
            continue;
        if (offset < dataEnd)
            break;
        if (__builtin_add_overflow(offset, size, &dataEnd))
            break;
        return Block{offset, {static_cast<const std::byte*>(bytes), size}};
    }
    return std::unexpected(ArchiveError{ArchiveError::Case::damaged, "data nenavazují"});
}

ArchiveReader::ArchiveReader(std::unique_ptr<State> state) : state_(std::move(state)) {}

ArchiveReader::~ArchiveReader() = default;

Result<std::unique_ptr<ArchiveReader>>
ArchiveReader::open(int descriptor, const ArchiveRequest& request, IsCancelled isCancelled) {
    const ArchiveLocale locale;
    auto state = std::make_unique<State>(descriptor, request, std::move(isCancelled));
    if (auto error = state->open())
        return std::unexpected(*std::move(error));
    return std::unique_ptr<ArchiveReader>(new ArchiveReader(std::move(state)));
}

Result<std::optional<StreamEntry>> ArchiveReader::next() {
    const ArchiveLocale locale;
    for (;;) {
        const auto met = state_->nextHeader();
        if (!met)
            return std::unexpected(met.error());
        if (*met == nullptr && !state_->isEmptyCompressedFile())
            return std::nullopt;
        state_->entries += 1;
        state_->dataEnd = 0;
        if (*met == nullptr) {
            state_->facts.formatFamily = ArchiveFamily::raw;
            return state_->emptyFile();
        }
        StreamEntry entry;
        if (state_->convert(*met, entry))
            return entry;
    }
}

Result<EntryStream::Block> ArchiveReader::read() {
    const ArchiveLocale locale;
    return state_->readBlock();
}

const ArchiveFacts& ArchiveReader::facts() const {
    return state_->facts;
}

Result<int> openArchiveFile(const FileUrl& url) {
    const int descriptor = retried(
        [&] { return ::open(url.path().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY); });
    if (descriptor < 0)
        return std::unexpected(
            ArchiveError{ArchiveError::Case::cannotOpen, PosixError{errno}.reason()});
    return descriptor;
}

Result<std::unique_ptr<EntryStream>> DirectArchives::open(const ArchiveRequest& request,
                                                          IsCancelled isCancelled) const {
    const auto descriptor = openArchiveFile(request.url);
    if (!descriptor)
        return std::unexpected(descriptor.error());
    return ArchiveReader::open(*descriptor, request, std::move(isCancelled));
}

} // namespace fennik
