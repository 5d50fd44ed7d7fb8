#pragma once

#include "core/archives/EntryStream.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace fennik::test {

/// An entry as a test wants it to come, with whatever data.
struct ScriptedEntry {
    StreamEntry met = {};
    std::vector<std::pair<std::int64_t, std::string>> blocks = {}; ///< offset and bytes
    std::int64_t end = 0; ///< what the archive says of the length, after the last block
    std::optional<ArchiveError> error = {}; ///< in place of the end of the data

    static ScriptedEntry file(std::string path, const std::string& content) {
        ScriptedEntry result;
        result.met.entry = {.path = std::move(path),
                            .size = static_cast<std::int64_t>(content.size()),
                            .modified = {1'600'000'000, 123'456'789},
                            .mode = 0640};
        result.met.declaresSize = true;
        // In two pieces, so that something can happen in between.
        const auto half = content.size() / 2;
        if (half > 0)
            result.blocks.emplace_back(0, content.substr(0, half));
        if (!content.empty())
            result.blocks.emplace_back(half, content.substr(half));
        return result;
    }
    static ScriptedEntry folder(std::string path, std::uint16_t mode = 0755) {
        ScriptedEntry result;
        result.met.entry = {.path = std::move(path),
                            .kind = ArchiveEntry::Kind::directory,
                            .modified = {1'500'000'000, 1},
                            .mode = mode};
        return result;
    }
    static ScriptedEntry link(std::string path, std::string target,
                              ArchiveEntry::Kind kind = ArchiveEntry::Kind::symlink) {
        ScriptedEntry result;
        result.met.entry = {.path = std::move(path),
                            .kind = kind,
                            .modified = {1'400'000'000, 2},
                            .mode = 0777,
                            .linkTarget = std::move(target)};
        return result;
    }
    static ScriptedEntry hardLink(std::string path, std::string target) {
        return link(std::move(path), std::move(target), ArchiveEntry::Kind::hardlink);
    }
};

/// One archive that holds what a test says, without a file.
class ScriptedArchives final : public ArchiveOpener {
public:
    std::vector<ScriptedEntry> entries = {};
    ArchiveFacts facts = {.formatName = "scripted", .formatFamily = tarFamily, .fileSize = 1000};
    std::string password = {};              ///< of its encrypted entries
    std::optional<ArchiveError> error = {}; ///< in place of its end
    /// Called before every answer of a stream.
    std::function<void()> onCall = [] {};

    static constexpr std::uint32_t tarFamily = 0x30000;
    static constexpr std::uint32_t zipFamily = 0x50000;
    static constexpr std::uint32_t sevenZipFamily = 0xE0000;

    EntryStream::Result<std::unique_ptr<EntryStream>> open(const ArchiveRequest& request,
                                                           IsCancelled isCancelled) const override {
        return std::make_unique<Stream>(*this, request.password, std::move(isCancelled));
    }

private:
    class Stream final : public EntryStream {
    public:
        Stream(const ScriptedArchives& archive, std::string password, IsCancelled isCancelled)
            : archive_(archive),
              password_(std::move(password)),
              isCancelled_(std::move(isCancelled)) {}

        Result<std::optional<StreamEntry>> next() override {
            archive_.onCall();
            if (isCancelled_())
                return std::unexpected(ArchiveError{ArchiveError::Case::cancelled});
            if (place_ < archive_.entries.size()) {
                current_ = &archive_.entries[place_++];
                block_ = 0;
                return current_->met;
            }
            if (archive_.error)
                return std::unexpected(*archive_.error);
            return std::nullopt;
        }
        Result<Block> read() override {
            archive_.onCall();
            if (isCancelled_())
                return std::unexpected(ArchiveError{ArchiveError::Case::cancelled});
            if (current_->met.entry.encrypted && password_ != archive_.password)
                return std::unexpected(ArchiveError{password_.empty()
                                                        ? ArchiveError::Case::passwordRequired
                                                        : ArchiveError::Case::wrongPassword});
            if (block_ < current_->blocks.size()) {
                const auto& [offset, bytes] = current_->blocks[block_++];
                return Block{offset, std::as_bytes(std::span(bytes))};
            }
            if (current_->error)
                return std::unexpected(*current_->error);
            return Block{.offset = current_->end};
        }
        const ArchiveFacts& facts() const override { return archive_.facts; }

    private:
        const ScriptedArchives& archive_;
        std::string password_;
        IsCancelled isCancelled_;
        const ScriptedEntry* current_ = nullptr;
        std::size_t place_ = 0;
        std::size_t block_ = 0;
    };
};

} // namespace fennik::test
