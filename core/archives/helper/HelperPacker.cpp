#include "core/archives/helper/HelperPacker.h"

#include "core/archives/ArchiveError.h"
#include "core/archives/helper/ArchiveMessages.h"
#include "core/archives/helper/HelperProcess.h"
#include "core/base/DisplayText.h"
#include "core/platform/UnfinishedFile.h"

#include <chrono>
#include <optional>
#include <utility>

namespace fennik {

namespace {

using std::chrono::steady_clock;

/// Passes on to the job what the helper says.
class Packing {
public:
    Packing(HelperProcess helper, const FileUrl& destination, OperationContext& context)
        : helper_(std::move(helper)), destination_(destination), context_(context) {}

    bool run(const PackRequest& request) {
        MessageWriter messages;
        messages.begin(MessageKind::packArchive);
        ArchiveMessages::put(messages, request);
        messages.finish();
        const auto isOver = [this] { return isOverdue(); };
        Result result = helper_.send(messages, isOver);
        while (result && !isPacked_) {
            const auto message = helper_.receive(isOver);
            result = message ? take(*message) : Result(std::unexpected(message.error()));
        }
        if (!result)
            loseHelper(result.error());
        // The archive is whole once it has its name.
        return isPacked_.value_or(isArchiveThere_);
    }

private:
    using Result = HelperProcess::Result<void>;

    /// A helper that was told to stop has some time to remove what is half written by itself.
    bool isOverdue() {
        constexpr std::chrono::milliseconds grace(500);
        if (!context_.isCancelled())
            return false;
        const auto now = steady_clock::now();
        stopped_ = stopped_.value_or(now);
        return now - *stopped_ > grace;
    }

    Result take(const HelperProcess::Message& message) {
        MessageReader fields(message.fields);
        switch (message.kind) {
        case MessageKind::checkpoint:
            return answer();
        case MessageKind::currentName:
        case MessageKind::error:
        case MessageKind::failure:
        case MessageKind::created:
            takeText(message.kind, fields);
            break;
        case MessageKind::packed:
            isPacked_ = fields.flag();
            break;
        default:
            takeCounts(message.kind, fields);
        }
        if (!fields.isWhole())
            return helper_.loseOver(HelperLoss::nonsense);
        return {};
    }

    Result answer() {
        MessageWriter answer;
        answer.begin(context_.checkpoint() == Checkpoint::goOn ? MessageKind::goOn
                                                               : MessageKind::stop);
        answer.finish();
        return helper_.send(answer, [this] { return isOverdue(); });
    }

    void takeText(MessageKind kind, MessageReader& fields) {
        auto text = fields.text();
        if (!fields.isWhole())
            return;
        switch (kind) {
        case MessageKind::currentName:
            return context_.setCurrentName(text);
        case MessageKind::error:
            return context_.addError(displayText(text));
        case MessageKind::failure:
            return context_.fail(displayText(text));
        default:
            takeCreated(text, fields);
        }
    }

    /// Undo will remove it, so it has to be what packing makes.
    void takeCreated(const std::string& name, MessageReader& fields) {
        if (name != destination_.lastComponent() && !UnfinishedFile::isName(name))
            return fields.spoil();
        isArchiveThere_ = isArchiveThere_ || name == destination_.lastComponent();
        context_.addStep(UndoSteps::Created{destination_.parent().appending(name)});
    }

    void takeCounts(MessageKind kind, MessageReader& fields) {
        const auto count = fields.number<std::int64_t>();
        const auto files = kind == MessageKind::totals ? fields.number<std::int64_t>() : 0;
        if (count < 0 || files < 0)
            fields.spoil();
        if (!fields.isWhole())
            return;
        switch (kind) {
        case MessageKind::totals:
            return context_.setTotals(count, files);
        case MessageKind::bytesWritten:
            return context_.bytesWritten(count);
        case MessageKind::bytesAccounted:
            return context_.bytesAccounted(count);
        case MessageKind::filesDone:
            return context_.filesDone(count);
        default:
            fields.spoil();
        }
    }

    void loseHelper(HelperLoss loss) {
        if (const auto folder = OpenFolder::open(destination_.parent().path(), FollowLinks::yes))
            UnfinishedFile::removeAbandoned(*folder);
        if (loss != HelperLoss::cancelled && !isArchiveThere_)
            context_.fail(
                ArchiveError{ArchiveError::Case::writeFailed, "balení skončilo chybou"}.message());
    }

    HelperProcess helper_;
    const FileUrl& destination_;
    OperationContext& context_;
    std::optional<steady_clock::time_point> stopped_ = {}; ///< when the job was seen cancelled
    bool isArchiveThere_ = false;
    std::optional<bool> isPacked_ = {}; ///< none until the helper is done
};

} // namespace

HelperPacker::HelperPacker(std::string program) : program_(std::move(program)) {}

bool HelperPacker::pack(const std::vector<FileUrl>& sources, const FileUrl& destination,
                        const PackOptions& options, OperationContext& context) const {
    // One of the writers keeps its whole stream in a temporary file until the end.
    auto helper = HelperProcess::start(program_, -1, {{"TMPDIR", destination.parent().path()}});
    if (!helper) {
        context.fail(
            ArchiveError{ArchiveError::Case::writeFailed, helper.error().reason()}.message());
        return false;
    }
    return Packing(std::move(*helper), destination, context)
        .run({.sources = sources, .destination = destination, .options = options});
}

} // namespace fennik
