#include "core/archives/UnlockingStream.h"

#include "core/archives/FormatLabel.h"

#include <utility>

namespace fennik {

UnlockingStream::UnlockingStream(const ArchiveOpener& archives, OperationContext& context,
                                 const AskPassword& askPassword, ArchiveRequest request)
    : archives_(archives),
      context_(context),
      askPassword_(askPassword),
      request_(std::move(request)) {}

EntryStream::Result<void> UnlockingStream::open() {
    auto opened = archives_.open(request_, [this] { return context_.isCancelled(); });
    if (!opened)
        return std::unexpected(opened.error());
    stream_ = std::move(*opened);
    return {};
}

EntryStream::Result<std::optional<StreamEntry>> UnlockingStream::nextOnce() {
    if (!stream_) {
        if (auto opened = open(); !opened)
            return std::unexpected(opened.error());
    }
    auto entry = stream_->next();
    facts_ = stream_->facts();
    return entry;
}

EntryStream::Result<std::optional<StreamEntry>> UnlockingStream::next() {
    auto entry = nextOnce();
    while (!entry && entry.error().isAboutPassword()) {
        if (auto unlocked = unlock(entry.error()); !unlocked)
            return std::unexpected(unlocked.error());
        entry = nextOnce();
    }
    if (entry) {
        ++entries_;
        hasReadData_ = false;
    }
    return entry;
}

EntryStream::Result<EntryStream::Block> UnlockingStream::read() {
    auto block = stream_->read();
    while (!block && block.error().isAboutPassword() && !hasReadData_) {
        if (auto unlocked = unlock(block.error()); !unlocked)
            return std::unexpected(unlocked.error());
        block = stream_->read();
    }
    hasReadData_ = true;
    return block;
}

EntryStream::Result<void> UnlockingStream::unlock(const ArchiveError& error) {
    using Case = ArchiveError::Case;
    for (auto reason = error;;) {
        // Nothing is known of an archive whose first entry has not been met.
        if (entries_ > 0 && facts_.formatFamily != ArchiveFamily::zip)
            return std::unexpected(
                ArchiveError{Case::unsupportedEncryption, formatLabel(facts_, request_.url)});
        std::optional<std::string> password;
        context_.whileAsking([&] { password = askPassword_(request_.url, reason); });
        if (!password) {
            context_.cancelNow();
            return std::unexpected(ArchiveError{Case::cancelled});
        }
        request_.password = std::move(*password);
        auto reached = open();
        if (reached)
            reached = catchUp();
        if (reached || !reached.error().isAboutPassword())
            return reached;
        reason = reached.error();
    }
}

EntryStream::Result<void> UnlockingStream::catchUp() {
    const auto before = facts_;
    for (std::int64_t met = 0; met < entries_; ++met) {
        const auto entry = stream_->next();
        if (!entry)
            return std::unexpected(entry.error());
        if (!*entry || !stream_->facts().isOfSameFile(before))
            return std::unexpected(ArchiveError{ArchiveError::Case::damaged, "mezitím se změnil"});
    }
    return {};
}

} // namespace fennik
