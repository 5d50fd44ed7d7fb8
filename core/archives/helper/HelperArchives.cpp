#include "core/archives/helper/HelperArchives.h"

#include "core/archives/ArchiveReader.h"
#include "core/archives/helper/ArchiveHelper.h"
#include "core/archives/helper/ArchiveMessages.h"
#include "core/helper/HelperProcess.h"
#include "core/platform/posix/Descriptor.h"

#include <limits>
#include <utility>

namespace fennik {

namespace {

template <class T>
using Result = EntryStream::Result<T>;

ArchiveError errorOf(HelperLoss loss) {
    using enum ArchiveError::Case;
    switch (loss) {
    case HelperLoss::cancelled:
        return {cancelled};
    case HelperLoss::outOfTime:
        return {damaged, "čtení se zastavilo"};
    case HelperLoss::outOfMemory:
        return {damaged, "čtení chtělo příliš mnoho paměti"};
    case HelperLoss::crashed:
        return {damaged, "čtení skončilo chybou"};
    case HelperLoss::nonsense:
        break;
    }
    return {damaged, "čtení nedává smysl"};
}

/// The entries as the helper sends them.
class HelperStream final : public EntryStream {
public:
    HelperStream(HelperProcess helper, IsCancelled isCancelled)
        : helper_(std::move(helper)), isCancelled_(std::move(isCancelled)) {}

    Result<void> open(const ArchiveRequest& request) {
        MessageWriter messages;
        messages.begin(MessageKind::readArchive);
        ArchiveMessages::put(messages, request);
        messages.finish();
        if (const auto sent = helper_.send(messages, isCancelled_); !sent)
            return std::unexpected(errorOf(sent.error()));
        const auto answer = receive();
        if (!answer)
            return std::unexpected(answer.error());
        if (answer->kind == MessageKind::failed)
            return std::unexpected(failureIn(*answer));
        return takeFacts(*answer);
    }

    Result<std::optional<StreamEntry>> next() override {
        while (!failure_ && !hasEnded_) {
            const auto message = receive();
            if (!message)
                return std::unexpected(message.error());
            switch (message->kind) {
            case MessageKind::facts:
                if (const auto taken = takeFacts(*message); !taken)
                    return std::unexpected(taken.error());
                break;
            case MessageKind::entry:
                return takeEntry(*message);
            case MessageKind::data:
            case MessageKind::dataEnd:
            case MessageKind::dataFailed:
                break; // nobody wants it
            case MessageKind::end:
                hasEnded_ = true;
                break;
            case MessageKind::failed:
                failure_ = failureIn(*message);
                break;
            default:
                return nonsense();
            }
        }
        hasData_ = false;
        if (failure_)
            return std::unexpected(*failure_);
        return std::nullopt;
    }

    Result<Block> read() override {
        if (!hasData_)
            return Block{.offset = dataEnd_};
        const auto message = receive();
        if (!message)
            return std::unexpected(message.error());
        MessageReader fields(message->fields);
        switch (message->kind) {
        case MessageKind::data:
            return takeData(fields);
        case MessageKind::dataEnd:
            hasData_ = false;
            return takeEnd(fields);
        case MessageKind::dataFailed:
            hasData_ = false;
            return std::unexpected(failureIn(*message));
        default:
            return nonsense();
        }
    }

    const ArchiveFacts& facts() const override { return facts_; }

private:
    Result<HelperMessage<MessageKind>> receive() {
        const auto message = helper_.receive<MessageKind>(isCancelled_);
        if (!message)
            return std::unexpected(errorOf(message.error()));
        return *message;
    }

    std::unexpected<ArchiveError> nonsense() {
        return std::unexpected(errorOf(helper_.loseOver(HelperLoss::nonsense).error()));
    }

    ArchiveError failureIn(const HelperMessage<MessageKind>& message) {
        if (const auto error = ArchiveMessages::error(MessageReader(message.fields)))
            return *error;
        return nonsense().error();
    }

    Result<void> takeFacts(const HelperMessage<MessageKind>& message) {
        auto facts = ArchiveMessages::facts(MessageReader(message.fields));
        if (message.kind != MessageKind::facts || !facts)
            return nonsense();
        facts_ = *std::move(facts);
        return {};
    }

    Result<std::optional<StreamEntry>> takeEntry(const HelperMessage<MessageKind>& message) {
        auto met = ArchiveMessages::entry(MessageReader(message.fields));
        if (!met)
            return nonsense();
        hasData_ = met->followedBy == FollowedBy::data;
        dataEnd_ = 0;
        return std::move(met->entry);
    }

    Result<Block> takeData(MessageReader& fields) {
        const auto offset = fields.number<std::int64_t>();
        const auto bytes = fields.rest();
        const auto size = static_cast<std::int64_t>(bytes.size());
        if (!fields.isWhole() || bytes.empty() || offset < dataEnd_ ||
            offset > std::numeric_limits<std::int64_t>::max() - size)
            return nonsense();
        dataEnd_ = offset + size;
        return Block{.offset = offset, .bytes = bytes};
    }

    Result<Block> takeEnd(MessageReader& fields) {
        const auto offset = fields.number<std::int64_t>();
        if (!fields.isWhole() || offset < dataEnd_)
            return nonsense();
        dataEnd_ = offset;
        return Block{.offset = offset};
    }

    HelperProcess helper_;
    IsCancelled isCancelled_;
    ArchiveFacts facts_ = {};
    std::optional<ArchiveError> failure_ = {}; ///< after which there is nothing more
    bool hasEnded_ = false;
    bool hasData_ = false;     ///< of the current entry, not yet read
    std::int64_t dataEnd_ = 0; ///< of what was read
};

} // namespace

HelperArchives::HelperArchives(std::string program) : program_(std::move(program)) {}

Result<std::unique_ptr<EntryStream>> HelperArchives::open(const ArchiveRequest& request,
                                                          IsCancelled isCancelled) const {
    const auto descriptor = openArchiveFile(request.url);
    if (!descriptor)
        return std::unexpected(descriptor.error());
    const Descriptor archive(*descriptor);
    auto helper = HelperProcess::start(program_, archiveHelperOption, archive.number());
    if (!helper)
        return std::unexpected(
            ArchiveError{ArchiveError::Case::cannotOpen, helper.error().reason()});
    auto stream = std::make_unique<HelperStream>(std::move(*helper), std::move(isCancelled));
    if (const auto opened = stream->open(request); !opened)
        return std::unexpected(opened.error());
    return stream;
}

} // namespace fennik
