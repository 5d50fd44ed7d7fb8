#include "app/preview/decoding/DecodingHelper.h"

#include "app/preview/decoding/MediaFacts.h"
#include "app/preview/decoding/PageDecoding.h"
#include "app/preview/decoding/PictureDecoding.h"
#include "core/helper/HelperSide.h"
#include "core/helper/Outbox.h"
#include "core/platform/OwnProcess.h"

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <new>
#include <span>

namespace fennik::app {

namespace {

Decoding decode(DecodedKind kind, int descriptor) {
    if (kind == DecodedKind::media)
        return MediaFacts::of(descriptor);
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly) || !file.seek(0))
        return std::unexpected(DecodingFailure::damaged);
    return kind == DecodedKind::picture ? PictureDecoding::of(file) : PageDecoding::of(file);
}

bool tell(const DecodedPicture& picture) {
    Outbox outbox;
    outbox.messages().begin(PreviewMessage::picture);
    PreviewMessages::put(outbox.messages(), picture);
    outbox.messages().finish();
    std::span<const std::byte> left(picture.pixels);
    while (!left.empty()) {
        const auto piece = left.first(std::min(left.size(), PreviewMessages::largestPiece));
        outbox.messages().begin(PreviewMessage::pixels);
        outbox.messages().rest(piece);
        outbox.messages().finish();
        if (!outbox.send())
            return false;
        left = left.subspan(piece.size());
    }
    return true;
}

bool tell(const DecodedMedia& media) {
    Outbox outbox;
    outbox.messages().begin(PreviewMessage::media);
    PreviewMessages::put(outbox.messages(), media);
    outbox.messages().finish();
    return outbox.send();
}

bool tell(DecodingFailure failure) {
    Outbox outbox;
    outbox.messages().begin(PreviewMessage::failed);
    outbox.messages().choice(failure);
    outbox.messages().finish();
    return outbox.send();
}

int decodeForOthers(const DecodingWork& work, DecodedKind kind) {
    OwnProcess::limitMemory(work.memory);
    OwnProcess::limitProcessor(work.processorTime);
    const auto decoded = work.decode(kind, HelperSide::descriptor);
    const bool isHeard =
        decoded ? std::visit([](const auto& content) { return tell(content); }, *decoded)
                : tell(decoded.error());
    return isHeard ? HelperExit::done : HelperExit::abandoned;
}

} // namespace

int runDecodingHelper() {
    return runDecodingHelper({.decode = decode});
}

int runDecodingHelper(const DecodingWork& work) {
    if (!OwnProcess::hasPipes())
        return HelperExit::noHelper;
    OwnProcess::renounce();
    std::setlocale(LC_CTYPE, "C.UTF-8"); // NOLINT(concurrency-mt-unsafe): there is no other thread
    const auto request = HelperSide::takeRequest();
    if (!request)
        return HelperExit::abandoned;
    const auto kind = PreviewMessages::kind(MessageReader(request->fields));
    if (static_cast<PreviewMessage>(request->kind) != PreviewMessage::decode || !kind)
        return HelperExit::noHelper;
    OwnProcess::watchInput([] { std::_Exit(HelperExit::abandoned); });
    try {
        return decodeForOthers(work, *kind);
    } catch (const std::bad_alloc&) {
        return HelperExit::outOfMemory;
    }
}

} // namespace fennik::app
