#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace fennik::app {

/// What a file has to be decoded as before anybody can look at it.
enum class DecodedKind : std::uint8_t { picture, document, media };

/// A picture, or the first page of a document.
struct DecodedPicture {
    int width = 0; ///< of the pixels; the picture itself may be larger
    int height = 0;
    std::vector<std::byte> pixels =
        {};            ///< rows of `width` values of 32 bits: ARGB, not premultiplied
    int fullWidth = 0; ///< as the picture is to be seen; 0 where any size will do
    int fullHeight = 0;
    int pages = 0; ///< 0 for what has none
};

/// What a recording says of itself.
struct DecodedMedia {
    double seconds = 0; ///< 0: not known
    int width = 0;      ///< 0: no picture
    int height = 0;
    /// Titles and values for the eye, in their order: "Kodek", "H.264".
    std::vector<std::pair<std::string, std::string>> facts = {};
};

using Decoded = std::variant<DecodedPicture, DecodedMedia>;

/// Makes pictures and facts of files that nobody vouches for, without any harm to this process.
class PreviewDecoder {
public:
    /// No picture has a longer side in pixels.
    static constexpr int longestSide = 2048;

    virtual ~PreviewDecoder() = default;

    /// Decodes the regular file that is open as `descriptor`, and moves its position. A failure is
    /// a sentence, or empty after a cancellation. Waits; safe on any thread.
    virtual std::expected<Decoded, std::string>
    decode(DecodedKind kind, int descriptor, const std::function<bool()>& isCancelled) const = 0;
};

} // namespace fennik::app
