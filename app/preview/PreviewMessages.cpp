#include "app/preview/PreviewMessages.h"

#include "core/base/DisplayText.h"

#include <cmath>
#include <string>
#include <utility>

namespace fennik::app::PreviewMessages {

namespace {

constexpr std::uint32_t mostFacts = 20;
constexpr std::size_t longestFact = 400;
constexpr std::int64_t mostSeconds = std::int64_t{1} << 31;
constexpr double millisecondsOfSecond = 1000;
/// No picture in the world is larger.
constexpr std::int32_t mostPixels = 10'000'000;
constexpr std::int32_t mostPages = 10'000'000;

std::int32_t numberUpTo(MessageReader& fields, std::int32_t most) {
    const auto value = fields.number<std::int32_t>();
    if (value < 0 || value > most)
        fields.spoil();
    return fields.isSpoilt() ? 0 : value;
}

std::string textForEye(MessageReader& fields) {
    auto text = fields.text();
    if (text.size() > longestFact)
        fields.spoil();
    return displayText(text);
}

} // namespace

void put(MessageWriter& message, const DecodedPicture& picture) {
    for (const int value :
         {picture.width, picture.height, picture.fullWidth, picture.fullHeight, picture.pages})
        message.number(std::int32_t{value});
}

void put(MessageWriter& message, const DecodedMedia& media) {
    message.number(std::int64_t(std::llround(media.seconds * millisecondsOfSecond)));
    message.number(std::int32_t{media.width});
    message.number(std::int32_t{media.height});
    message.number(static_cast<std::uint32_t>(media.facts.size()));
    for (const auto& [title, value] : media.facts) {
        message.text(title);
        message.text(std::string_view(value).substr(0, longestFact));
    }
}

std::optional<DecodedKind> kind(MessageReader fields) {
    const auto kind = fields.choice(DecodedKind::media);
    return fields.isWhole() ? std::optional(kind) : std::nullopt;
}

std::optional<DecodedPicture> picture(MessageReader fields) {
    DecodedPicture picture;
    picture.width = numberUpTo(fields, PreviewDecoder::longestSide);
    picture.height = numberUpTo(fields, PreviewDecoder::longestSide);
    picture.fullWidth = numberUpTo(fields, mostPixels);
    picture.fullHeight = numberUpTo(fields, mostPixels);
    picture.pages = numberUpTo(fields, mostPages);
    const bool isPicture = picture.width > 0 && picture.height > 0 &&
                           (picture.fullWidth > 0) == (picture.fullHeight > 0);
    return fields.isWhole() && isPicture ? std::optional(std::move(picture)) : std::nullopt;
}

std::optional<DecodedMedia> media(MessageReader fields) {
    DecodedMedia media;
    const auto milliseconds = fields.number<std::int64_t>();
    if (milliseconds >= 0 && milliseconds < mostSeconds * 1000)
        media.seconds = double(milliseconds) / millisecondsOfSecond;
    media.width = numberUpTo(fields, mostPixels);
    media.height = numberUpTo(fields, mostPixels);
    const auto count = fields.number<std::uint32_t>();
    if (count > mostFacts)
        return std::nullopt;
    for (std::uint32_t i = 0; i < count; ++i) {
        auto title = textForEye(fields);
        auto value = textForEye(fields);
        media.facts.emplace_back(std::move(title), std::move(value));
    }
    return fields.isWhole() ? std::optional(std::move(media)) : std::nullopt;
}

std::optional<DecodingFailure> failure(MessageReader fields) {
    const auto failure = fields.choice(DecodingFailure::locked);
    return fields.isWhole() ? std::optional(failure) : std::nullopt;
}

} // namespace fennik::app::PreviewMessages
