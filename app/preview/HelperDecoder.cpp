#include "app/preview/HelperDecoder.h"

#include "app/preview/PreviewMessages.h"
#include "core/helper/HelperProcess.h"

#include <utility>

namespace fennik::app {

namespace {

using Clock = std::chrono::steady_clock;
using Failure = std::unexpected<std::string>;
using Message = HelperMessage<PreviewMessage>;

constexpr const char* damaged = "Soubor je poškozený a ukázat nejde.";
constexpr const char* tooLarge = "Na náhled je moc velký.";
constexpr const char* tooLong = "Náhled se nepodařilo připravit včas.";

Failure failureOf(HelperLoss loss) {
    switch (loss) {
    case HelperLoss::cancelled:
        return Failure("");
    case HelperLoss::outOfTime:
        return Failure(tooLong);
    case HelperLoss::outOfMemory:
        return Failure(tooLarge);
    case HelperLoss::crashed:
    case HelperLoss::nonsense:
        break;
    }
    return Failure(damaged);
}

Failure failureOf(DecodingFailure failure) {
    switch (failure) {
    case DecodingFailure::unsupported:
        return Failure("");
    case DecodingFailure::tooLarge:
        return Failure(tooLarge);
    case DecodingFailure::locked:
        return Failure("Dokument je chráněný heslem.");
    case DecodingFailure::damaged:
        break;
    }
    return Failure(damaged);
}

/// One conversation with a helper.
class Decoding {
public:
    Decoding(HelperProcess helper, HelperProcess::IsCancelled isOver)
        : helper_(std::move(helper)), isOver_(std::move(isOver)) {}

    std::expected<Decoded, std::string> run(DecodedKind kind) {
        MessageWriter request;
        request.begin(PreviewMessage::decode);
        request.choice(kind);
        request.finish();
        if (const auto sent = helper_.send(request, isOver_); !sent)
            return failureOf(sent.error());
        const auto answer = helper_.receive<PreviewMessage>(isOver_);
        if (!answer)
            return failureOf(answer.error());
        const MessageReader fields(answer->fields);
        switch (answer->kind) {
        case PreviewMessage::picture:
            if (auto picture = PreviewMessages::picture(fields))
                return takePixels(*std::move(picture));
            break;
        case PreviewMessage::media:
            if (auto media = PreviewMessages::media(fields))
                return *std::move(media);
            break;
        case PreviewMessage::failed:
            if (const auto failure = PreviewMessages::failure(fields))
                return failureOf(*failure);
            break;
        default:
            break;
        }
        return nonsense();
    }

private:
    Failure nonsense() { return failureOf(helper_.loseOver(HelperLoss::nonsense).error()); }

    std::expected<Decoded, std::string> takePixels(DecodedPicture picture) {
        constexpr std::size_t bytesOfPixel = 4;
        const auto wanted = std::size_t(picture.width) * std::size_t(picture.height) * bytesOfPixel;
        picture.pixels.reserve(wanted);
        while (picture.pixels.size() < wanted) {
            const auto message = helper_.receive<PreviewMessage>(isOver_);
            if (!message)
                return failureOf(message.error());
            const auto piece = message->fields;
            if (message->kind != PreviewMessage::pixels || piece.empty() ||
                piece.size() > wanted - picture.pixels.size())
                return nonsense();
            picture.pixels.insert(picture.pixels.end(), piece.begin(), piece.end());
        }
        return picture;
    }

    HelperProcess helper_;
    HelperProcess::IsCancelled isOver_;
};

} // namespace

HelperDecoder::HelperDecoder(std::string program, std::chrono::milliseconds patience)
    : program_(std::move(program)), patience_(patience) {}

std::expected<Decoded, std::string>
HelperDecoder::decode(DecodedKind kind, int descriptor,
                      const std::function<bool()>& isCancelled) const {
    const auto end = Clock::now() + patience_;
    auto helper = HelperProcess::start(program_, decodingHelperOption, descriptor,
                                       {{"QT_QPA_PLATFORM", "offscreen"}});
    if (!helper)
        return Failure("Náhled nejde připravit: " + helper.error().reason());
    auto decoded = Decoding(std::move(*helper), [&] {
                       return isCancelled() || Clock::now() >= end;
                   }).run(kind);
    if (!decoded && decoded.error().empty() && !isCancelled() && Clock::now() >= end)
        return Failure(tooLong);
    return decoded;
}

} // namespace fennik::app
