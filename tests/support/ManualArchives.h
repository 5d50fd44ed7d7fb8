#pragma once

#include "core/archives/ArchivePacker.h"
#include "core/archives/ArchiveReader.h"
#include "core/archives/EntryStream.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace fennik::test {

/// One entry of an archive that a test makes up, with its data.
struct ManualEntry {
    StreamEntry header = {};
    std::string data = {};

    static ManualEntry file(std::string path, std::string data) {
        const auto size = std::int64_t(data.size());
        return {{.entry = {.path = std::move(path),
                           .size = size,
                           .modified = {1'700'000'000, 0},
                           .mode = 0644},
                 .declaresSize = true},
                std::move(data)};
    }
    static ManualEntry folder(std::string path) {
        return {{.entry = {.path = std::move(path),
                           .kind = ArchiveEntry::Kind::directory,
                           .modified = {1'700'000'000, 0},
                           .mode = 0755}},
                {}};
    }
    static ManualEntry link(std::string path, std::string target) {
        return {{.entry = {.path = std::move(path),
                           .kind = ArchiveEntry::Kind::symlink,
                           .modified = {1'700'000'000, 0},
                           .mode = 0777,
                           .linkTarget = std::move(target)}},
                {}};
    }
};

/// Opens archives that a test makes up: what a file with that name holds. The file itself only has
/// to exist. Files with other names are opened for real.
class ManualArchives final : public ArchiveOpener {
public:
    EntryStream::Result<std::unique_ptr<EntryStream>> open(const ArchiveRequest& request,
                                                           IsCancelled isCancelled) const override {
        opened.push_back(request.url.path());
        struct stat status = {};
        if (stat(request.url.path().c_str(), &status) != 0)
            return std::unexpected(ArchiveError::of("", errno));
        if (whileOpening)
            whileOpening();
        if (isCancelled())
            return std::unexpected(ArchiveError{.kind = ArchiveError::Case::cancelled});
        const auto found = content.find(std::string(request.url.lastComponent()));
        if (found == content.end())
            return DirectArchives().open(request, std::move(isCancelled));
        if (const auto wanted = passwords.find(found->first);
            wanted != passwords.end() && wanted->second != request.password)
            return std::unexpected(ArchiveError{.kind = request.password.empty()
                                                            ? ArchiveError::Case::passwordRequired
                                                            : ArchiveError::Case::wrongPassword,
                                                .encryption = "AES-256"});
        return std::make_unique<Stream>(
            found->second, ArchiveFacts{.formatName = "made up",
                                        .formatFamily = 0x50000,
                                        .fileSize = status.st_size,
                                        .fileModified = {status.st_mtim.tv_sec,
                                                         std::uint32_t(status.st_mtim.tv_nsec)}});
    }

    std::map<std::string, std::vector<ManualEntry>> content; ///< by the names of the files
    std::map<std::string, std::string> passwords;            ///< without which they do not open
    std::function<void()> whileOpening;
    mutable std::vector<std::string> opened; ///< paths

private:
    class Stream final : public EntryStream {
    public:
        Stream(std::vector<ManualEntry> entries, ArchiveFacts facts)
            : entries_(std::move(entries)), facts_(std::move(facts)) {}
        Result<std::optional<StreamEntry>> next() override {
            isRead_ = false;
            if (next_ == entries_.size())
                return std::nullopt;
            return entries_[next_++].header;
        }
        Result<Block> read() override {
            if (std::exchange(isRead_, true))
                return Block{};
            return Block{.bytes = std::as_bytes(std::span(entries_[next_ - 1].data))};
        }
        const ArchiveFacts& facts() const override { return facts_; }

    private:
        std::vector<ManualEntry> entries_;
        ArchiveFacts facts_;
        std::size_t next_ = 0;
        bool isRead_ = false;
    };
};

/// Makes an archive of one byte, or fails with a sentence, or packs for real.
class ManualPacker final : public ArchivePacker {
public:
    bool pack(const std::vector<FileUrl>& sources, const FileUrl& destination,
              const PackOptions& options, OperationContext& context) const override {
        packed.push_back({sources, destination, options});
        if (isReal)
            return DirectPacker().pack(sources, destination, options, context);
        if (!failure.empty()) {
            context.fail(failure);
            return false;
        }
        std::ofstream(destination.path()) << "x";
        context.filesDone(std::ssize(sources));
        context.addStep(UndoSteps::Created{destination});
        return true;
    }

    struct Call {
        std::vector<FileUrl> sources = {};
        FileUrl destination = {};
        PackOptions options = {};
    };
    std::string failure;
    bool isReal = false;
    mutable std::vector<Call> packed;
};

} // namespace fennik::test
