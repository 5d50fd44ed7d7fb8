#include "core/archives/helper/PackingHelper.h"

#include "core/archives/helper/Outbox.h"
#include "core/platform/OwnProcess.h"

#include <array>
#include <chrono>
#include <cstring>
#include <variant>

namespace fennik {

namespace {

using std::chrono::steady_clock;

/// Packing removes nothing.
class NoTrash final : public TrashProvider {
public:
    std::expected<FileUrl, std::string> trash(const FileUrl&) const override {
        return std::unexpected(std::string());
    }
    void forget(const FileUrl&) const override {}
};

/// The job, seen from another process: what it is told goes there, and now and then it is asked
/// whether to go on. It answers when it is no longer paused, and when it has seen all that it was
/// told, so that it also sets the pace.
class DistantContext final : public OperationContext {
public:
    DistantContext(const PackRequest& request, const std::atomic<bool>& isAbandoned)
        : request_(request), isAbandoned_(isAbandoned) {}

    TransferKind kind() const override { return TransferKind::pack; }
    ConflictChoice answer(const Conflict&) override { return ConflictChoice::cancel; }
    void whileAsking(const std::function<void()>&) override {} // packing asks nothing
    Checkpoint checkpoint() override { return isCancelled() ? Checkpoint::stop : Checkpoint::goOn; }
    bool isCancelled() const override {
        constexpr std::chrono::milliseconds pause(20);
        if (isStopped_ || isAbandoned_)
            return true;
        if (steady_clock::now() - lastAnswer_ < pause)
            return false;
        isStopped_ = !mayGoOn();
        lastAnswer_ = steady_clock::now();
        return isStopped_;
    }

    void setTotals(std::int64_t bytes, std::int64_t files) override {
        tell(MessageKind::totals, bytes, files);
    }
    void setCurrentName(std::string_view name) override { tell(MessageKind::currentName, name); }
    void bytesWritten(std::int64_t count) override { tell(MessageKind::bytesWritten, count); }
    void bytesAccounted(std::int64_t count) override { tell(MessageKind::bytesAccounted, count); }
    void filesDone(std::int64_t count) override { tell(MessageKind::filesDone, count); }
    void addError(std::string sentence) override {
        tell(MessageKind::error, std::string_view(sentence));
    }
    void fail(std::string sentence) override {
        tell(MessageKind::failure, std::string_view(sentence));
    }
    /// Told at once: it must not be lost with this process.
    void addStep(UndoStep step) override {
        const auto* const created = std::get_if<UndoSteps::Created>(&step);
        if (created == nullptr || created->url.parent() != request_.destination.parent())
            return; // packing takes no other steps
        tell(MessageKind::created, created->url.lastComponent());
        isStopped_ = !outbox_.send() || isStopped_;
    }
    // Packing neither stops itself nor skips anything, and takes no step back.
    void cancelNow() override {}
    void itemsSkipped(std::int64_t) override {}
    void dropLastStep() override {}
    bool isCapped() const override { return false; }
    const TrashProvider& trash() const override { return trash_; }

    int endWith(bool isPacked) {
        outbox_.messages().begin(MessageKind::packed);
        outbox_.messages().flag(isPacked);
        outbox_.messages().finish();
        return outbox_.send() ? HelperExit::done : HelperExit::abandoned;
    }

private:
    void put(std::int64_t number) { outbox_.messages().number(number); }
    void put(std::string_view text) {
        constexpr std::size_t longestText = std::size_t{64} << 10;
        outbox_.messages().text(text.substr(0, longestText));
    }
    template <class... Fields>
    void tell(MessageKind kind, Fields... fields) {
        outbox_.messages().begin(kind);
        (put(fields), ...);
        outbox_.messages().finish();
        if (outbox_.isFull())
            isStopped_ = !outbox_.send() || isStopped_;
    }

    bool mayGoOn() const {
        outbox_.messages().begin(MessageKind::checkpoint);
        outbox_.messages().finish();
        MessageHead answer;
        std::array<std::byte, sizeof answer> bytes{};
        if (!outbox_.send() || !OwnProcess::readAll(bytes))
            return false;
        std::memcpy(&answer, bytes.data(), sizeof answer);
        return answer.kind == MessageKind::goOn;
    }

    const PackRequest& request_;
    const std::atomic<bool>& isAbandoned_;
    NoTrash trash_;
    // Asking is no change to whoever asks.
    mutable Outbox outbox_;
    mutable bool isStopped_ = false;
    mutable steady_clock::time_point lastAnswer_ = {};
};

} // namespace

int packForOthers(const ArchivePacker& packer, const PackRequest& request,
                  const std::atomic<bool>& isAbandoned) {
    DistantContext context(request, isAbandoned);
    return context.endWith(
        packer.pack(request.sources, request.destination, request.options, context));
}

} // namespace fennik
