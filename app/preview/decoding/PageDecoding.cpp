#include "app/preview/decoding/PageDecoding.h"

#include "app/preview/decoding/PictureDecoding.h"

#include <QSizeF>

#include <poppler-qt6.h>

#include <algorithm>
#include <memory>

namespace fennik::app::PageDecoding {

namespace {

constexpr double pointsOfInch = 72;
constexpr double longestSide = 1600; // pixels
constexpr double finest = 300;       // dots per inch

} // namespace

Decoding of(QFile& file) {
    const auto document = Poppler::Document::load(&file);
    if (document == nullptr)
        return std::unexpected(DecodingFailure::damaged);
    if (document->isLocked())
        return std::unexpected(DecodingFailure::locked);
    document->setRenderHint(Poppler::Document::Antialiasing);
    document->setRenderHint(Poppler::Document::TextAntialiasing);
    const auto page = document->page(0);
    if (page == nullptr)
        return std::unexpected(DecodingFailure::damaged);
    const auto size = page->pageSizeF();
    const double longer = std::max(size.width(), size.height());
    if (!(longer > 0))
        return std::unexpected(DecodingFailure::damaged);
    const double resolution = std::min(finest, longestSide * pointsOfInch / longer);
    const auto image = page->renderToImage(resolution, resolution);
    const int most = PreviewDecoder::longestSide;
    if (image.isNull() || image.width() > most || image.height() > most)
        return std::unexpected(DecodingFailure::damaged);
    auto decoded = PictureDecoding::picture(image);
    decoded.pages = document->numPages();
    return decoded;
}

} // namespace fennik::app::PageDecoding
