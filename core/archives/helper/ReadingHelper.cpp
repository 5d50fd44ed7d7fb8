#include "core/archives/helper/ReadingHelper.h"

#include "core/archives/EntrySelection.h"
#include "core/archives/helper/ArchiveMessages.h"
#include "core/helper/Outbox.h"
#include "core/platform/OwnProcess.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace fennik {

namespace {

/// How often the limit is put off, and how long what was found may wait before it is sent.
constexpr std::chrono::milliseconds pulse(50);
constexpr std::size_t largestPiece = std::size_t{128} << 10;

/// Puts the limit of processor time off as long as the work gets on.
class Progress {
public:
    explicit Progress(std::chrono::seconds limit) : limit_(limit) {}

    void knowSize(std::int64_t fileSize) {
        constexpr std::int64_t smallestRead = 16 << 10;
        constexpr std::int64_t spare = 256;
        mostReads_ = fileSize / smallestRead + spare;
    }

    /// The library asks for more of the file. It may do so until it could have read all of it.
    void readOn() {
        if (++reads_ <= mostReads_)
            putOff();
    }
    /// There is another entry or more data. Whether it is time to send it.
    bool getOn() {
        reads_ = 0;
        return putOff();
    }

private:
    bool putOff() {
        const auto now = OwnProcess::roughTime();
        if (now < next_)
            return false;
        next_ = now + pulse;
        OwnProcess::limitProcessor(limit_);
        return true;
    }

    std::chrono::seconds limit_;
    std::int64_t mostReads_ = 0;
    std::int64_t reads_ = 0;            ///< since there was something
    std::chrono::milliseconds next_{0}; ///< time to put it off
};

class Reading {
public:
    Reading(const HelperWork& work, const ArchiveRequest& request)
        : work_(work), request_(request), wanted_(request.wanted), progress_(work.processorTime) {}

    int run() {
        OwnProcess::limitProcessor(work_.processorTime);
        auto opened = work_.open(HelperSide::descriptor, request_, [this] {
            progress_.readOn();
            return false;
        });
        if (!opened)
            return endWith(opened.error());
        stream_ = *std::move(opened);
        progress_.knowSize(stream_->facts().fileSize);
        tellFacts();
        if (!outbox_.send())
            return HelperExit::abandoned;
        auto met = stream_->next();
        tellFacts(); // by now they are complete
        while (met) {
            const auto& entry = *met;
            if (!entry)
                return endWithAll();
            if (!tell(*entry))
                return HelperExit::abandoned;
            met = stream_->next();
        }
        return endWith(met.error());
    }

private:
    int endWith(const ArchiveError& error) {
        auto& messages = outbox_.messages();
        messages.begin(MessageKind::failed);
        ArchiveMessages::put(messages, error);
        messages.finish();
        return outbox_.send() ? HelperExit::done : HelperExit::abandoned;
    }

    int endWithAll() {
        outbox_.messages().begin(MessageKind::end);
        outbox_.messages().finish();
        return outbox_.send() ? HelperExit::done : HelperExit::abandoned;
    }

    void tellFacts() {
        auto& messages = outbox_.messages();
        messages.begin(MessageKind::facts);
        ArchiveMessages::put(messages, stream_->facts());
        messages.finish();
    }

    /// False where nobody listens any more.
    bool tell(const StreamEntry& met) {
        const auto kind = met.entry.kind;
        const bool mayHaveData =
            kind == ArchiveEntry::Kind::file || kind == ArchiveEntry::Kind::hardlink;
        const bool hasData =
            mayHaveData && !met.isRefused && !met.isSpecial && wanted_.baseLength(met.entry.path);
        auto& messages = outbox_.messages();
        messages.begin(MessageKind::entry);
        ArchiveMessages::put(messages, met, hasData ? FollowedBy::data : FollowedBy::nothing);
        messages.finish();
        return getOn() && (!hasData || tellData());
    }

    bool tellData() {
        while (true) {
            const auto block = stream_->read();
            auto& messages = outbox_.messages();
            if (!block) {
                messages.begin(MessageKind::dataFailed);
                ArchiveMessages::put(messages, block.error());
                messages.finish();
                return getOn();
            }
            if (block->bytes.empty()) {
                messages.begin(MessageKind::dataEnd);
                messages.number(block->offset);
                messages.finish();
                return getOn();
            }
            if (!tellBlock(*block))
                return false;
        }
    }

    bool tellBlock(EntryStream::Block block) {
        while (!block.bytes.empty()) {
            const auto piece = block.bytes.first(std::min(block.bytes.size(), largestPiece));
            auto& messages = outbox_.messages();
            messages.begin(MessageKind::data);
            messages.number(block.offset);
            messages.rest(piece);
            messages.finish();
            if (!getOn())
                return false;
            block.offset += static_cast<std::int64_t>(piece.size());
            block.bytes = block.bytes.subspan(piece.size());
        }
        return true;
    }

    /// Something new waits to be sent. False where nobody listens any more.
    bool getOn() {
        const bool isTime = progress_.getOn();
        return (!isTime && !outbox_.isFull()) || outbox_.send();
    }

    const HelperWork& work_;
    const ArchiveRequest& request_;
    EntrySelection wanted_; ///< entries whose data is going to be read
    Progress progress_;
    Outbox outbox_;
    std::unique_ptr<EntryStream> stream_;
};

} // namespace

int readForOthers(const HelperWork& work, const ArchiveRequest& request) {
    OwnProcess::limitMemory(work.memory);
    return Reading(work, request).run();
}

} // namespace fennik
