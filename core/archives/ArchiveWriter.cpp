#include "core/archives/ArchiveWriter.h"

#include "core/archives/ArchiveError.h"

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <cerrno>
#include <limits>
#include <optional>
#include <utility>

namespace fennik {

namespace {

/// The library gathers so many bytes before it hands them over: so few that they are still in the
/// processor's cache when the system copies them.
constexpr int blockSize = 64 * 1024;

bool succeeded(int result) {
    return result >= ARCHIVE_WARN;
}

/// Tells the library one thing after another, until it refuses one.
class Settings {
public:
    explicit Settings(archive* writer) : writer_(writer) {}

    template <class Call>
    Settings& call(const Call& call) {
        isFine_ = isFine_ && succeeded(call(writer_));
        return *this;
    }
    Settings& format(const char* module, const char* name, const std::string& value) {
        return call([&](archive* writer) {
            return archive_write_set_format_option(writer, module, name, value.c_str());
        });
    }
    Settings& filter(const char* module, const char* name, const std::string& value) {
        return call([&](archive* writer) {
            return archive_write_set_filter_option(writer, module, name, value.c_str());
        });
    }
    bool areFine() const { return isFine_; }

private:
    archive* writer_;
    bool isFine_ = true;
};

void configure(Settings& settings, const PackOptions& options) {
    constexpr auto level = "compression-level";
    const int number = std::clamp(options.level, 0, 9);
    const auto text = std::to_string(number);
    const bool storesOnly = number < 1;
    switch (options.format) {
    case ArchiveFormat::zip:
        settings.call(archive_write_set_format_zip)
            .format("zip", "compression", storesOnly ? "store" : "deflate");
        if (!storesOnly)
            settings.format("zip", level, text);
        if (!options.password.empty())
            settings.format("zip", "encryption", "aes256").call([&](archive* writer) {
                return archive_write_set_passphrase(writer, options.password.c_str());
            });
        return;
    case ArchiveFormat::sevenZip:
        settings.call(archive_write_set_format_7zip)
            .format("7zip", "compression", storesOnly ? "store" : "lzma2");
        if (!storesOnly)
            settings.format("7zip", level, text);
        return;
    case ArchiveFormat::tarGz:
        settings.call(archive_write_set_format_pax_restricted)
            .call(archive_write_add_filter_gzip)
            .filter("gzip", level, text);
        return;
    case ArchiveFormat::tarXz:
        settings.call(archive_write_set_format_pax_restricted)
            .call(archive_write_add_filter_xz)
            .filter("xz", level, text)
            .filter("xz", "threads", "0");
        return;
    case ArchiveFormat::tarBz2:
        // Its levels begin with 1, the fastest one.
        settings.call(archive_write_set_format_pax_restricted)
            .call(archive_write_add_filter_bzip2)
            .filter("bzip2", level, storesOnly ? "1" : text);
        return;
    }
}

/// What the format would turn into another time altogether becomes the nearest one that it keeps.
Date keptDate(Date date, ArchiveFormat format) {
    switch (format) {
    case ArchiveFormat::zip: // readers take the 32 bits as signed or not
        return std::clamp(date, {}, {std::numeric_limits<std::int32_t>::max(), 0});
    case ArchiveFormat::sevenZip: // tenths of microseconds since 1601, in 63 bits
        return std::clamp(date, {-11'644'473'600, 0}, {910'692'730'085, 0});
    case ArchiveFormat::tarGz:
    case ArchiveFormat::tarXz:
    case ArchiveFormat::tarBz2:
        break;
    }
    return date;
}

unsigned libraryType(FileType type) {
    switch (type) {
    case FileType::directory:
        return AE_IFDIR;
    case FileType::symlink:
        return AE_IFLNK;
    case FileType::regular:
    case FileType::other:
        break;
    }
    return AE_IFREG;
}

std::unexpected<std::string> writeFailure(std::string text) {
    return std::unexpected(
        ArchiveError{ArchiveError::Case::writeFailed, std::move(text)}.message());
}

} // namespace

struct ArchiveWriter::State {
    State(ArchiveFormat chosen, Sink given) : format(chosen), sink(std::move(given)) {}
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State();

    static la_ssize_t take(archive* writer, void* state, const void* bytes, std::size_t length);
    std::unexpected<std::string> failure() const;

    const ArchiveFormat format;
    const Sink sink;
    archive* writer = archive_write_new();
    archive_entry* entry = archive_entry_new();
    bool isOpen = false;
    std::optional<PosixError> sinkError = {};
};

ArchiveWriter::State::~State() {
    if (writer != nullptr && isOpen) {
        // What has to be freed is freed by closing alone. As nothing is written any more, and the
        // failure keeps the library from completing the entry, that is short.
        sinkError = PosixError{ECANCELED};
        archive_write_fail(writer);
        archive_write_close(writer);
    }
    archive_write_free(writer);
    archive_entry_free(entry);
}

la_ssize_t ArchiveWriter::State::take(archive* /*writer*/, void* state, const void* bytes,
                                      std::size_t length) {
    auto& self = *static_cast<State*>(state);
    if (self.sinkError)
        return -1;
    const auto taken = self.sink({static_cast<const std::byte*>(bytes), length});
    if (taken)
        return static_cast<la_ssize_t>(length);
    self.sinkError = taken.error();
    return -1;
}

std::unexpected<std::string> ArchiveWriter::State::failure() const {
    if (sinkError)
        return writeFailure(sinkError->reason());
    const char* text = archive_error_string(writer);
    std::string reason(text != nullptr && *text != '\0' ? text : "neznámá chyba");
    // The library has a file of its own that may have no room, and says no more of that.
    if (const PosixError error{archive_errno(writer)};
        error.code == ENOSPC || error.code == EDQUOT || error.code == EFBIG)
        reason = error.reason();
    return writeFailure(std::move(reason));
}

ArchiveWriter::ArchiveWriter(std::unique_ptr<State> state) : state_(std::move(state)) {}
ArchiveWriter::ArchiveWriter(ArchiveWriter&& other) noexcept = default;
ArchiveWriter& ArchiveWriter::operator=(ArchiveWriter&& other) noexcept = default;
ArchiveWriter::~ArchiveWriter() = default;

ArchiveWriter::Result<ArchiveWriter> ArchiveWriter::open(const PackOptions& options, Sink sink) {
    auto state = std::make_unique<State>(options.format, std::move(sink));
    auto* writer = state->writer;
    if (writer == nullptr || state->entry == nullptr)
        return std::unexpected("libarchive nejde spustit.");
    Settings settings(writer);
    configure(settings, options);
    settings.call([](archive* made) { return archive_write_set_bytes_per_block(made, blockSize); })
        .call([](archive* made) { return archive_write_set_bytes_in_last_block(made, 1); })
        .call([&](archive* made) {
            return archive_write_open(made, state.get(), nullptr, State::take, nullptr);
        });
    if (!settings.areFine())
        return state->failure();
    state->isOpen = true;
    return ArchiveWriter(std::move(state));
}

ArchiveWriter::Result<void> ArchiveWriter::begin(const PackedEntry& item) {
    auto* entry = archive_entry_clear(state_->entry);
    const auto modified = keptDate(item.modified, state_->format);
    archive_entry_copy_pathname(entry, item.path.c_str());
    archive_entry_set_perm(entry, item.mode);
    archive_entry_set_mtime(entry, modified.seconds, static_cast<long>(modified.nanoseconds));
    archive_entry_set_filetype(entry, libraryType(item.type));
    archive_entry_set_size(entry, item.type == FileType::regular ? item.size : 0);
    if (item.type == FileType::symlink)
        archive_entry_copy_symlink(entry, item.linkTarget.c_str());
    if (!succeeded(archive_write_header(state_->writer, entry)))
        return state_->failure();
    return {};
}

ArchiveWriter::Result<void> ArchiveWriter::write(std::span<const std::byte> bytes) {
    const auto written = archive_write_data(state_->writer, bytes.data(), bytes.size());
    if (written < 0 || static_cast<std::size_t>(written) != bytes.size())
        return state_->failure();
    return {};
}

ArchiveWriter::Result<void> ArchiveWriter::finish() {
    state_->isOpen = false;
    if (!succeeded(archive_write_close(state_->writer)))
        return state_->failure();
    return {};
}

} // namespace fennik
