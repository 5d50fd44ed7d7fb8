#include "app/preview/decoding/PictureDecoding.h"

#include <QGuiApplication>
#include <QImageReader>

#include <cstring>
#include <memory>

namespace fennik::app::PictureDecoding {

namespace {

constexpr int mostMegabytes = 1024; // of all the pixels of a picture

DecodingFailure failureOf(QImageReader::ImageReaderError error) {
    return error == QImageReader::UnsupportedFormatError ? DecodingFailure::unsupported
                                                         : DecodingFailure::damaged;
}

bool swapsSides(QImageIOHandler::Transformations transformation) {
    return transformation.testFlag(QImageIOHandler::TransformationRotate90);
}

} // namespace

DecodedPicture picture(const QImage& image) {
    const auto pixels = image.convertToFormat(QImage::Format_ARGB32);
    DecodedPicture decoded{.width = pixels.width(), .height = pixels.height()};
    // A row of 32-bit pixels has nothing behind it.
    decoded.pixels.resize(std::size_t(pixels.sizeInBytes()));
    std::memcpy(decoded.pixels.data(), pixels.constBits(), decoded.pixels.size());
    return decoded;
}

Decoding of(QFile& file) {
    QImageReader::setAllocationLimit(mostMegabytes);
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const bool isDrawing = reader.format().startsWith("svg");
    // The texts of a drawing need fonts, which only a whole application has.
    std::unique_ptr<QGuiApplication> application;
    int argumentCount = 1;
    char name[] = "fennik-preview";
    char* arguments[] = {name, nullptr};
    if (isDrawing)
        application = std::make_unique<QGuiApplication>(argumentCount, arguments);
    const auto whole = reader.size();
    const QSize most(PreviewDecoder::longestSide, PreviewDecoder::longestSide);
    const bool isTooLarge = whole.width() > most.width() || whole.height() > most.height();
    if (whole.isValid() && !whole.isEmpty() && (isTooLarge || isDrawing))
        reader.setScaledSize(whole.scaled(most, Qt::KeepAspectRatio).expandedTo({1, 1}));
    auto image = reader.read();
    if (image.isNull())
        return std::unexpected(failureOf(reader.error()));
    auto full = whole.isValid() ? whole : image.size();
    if (whole.isValid() && swapsSides(reader.transformation()))
        full.transpose();
    if (image.width() > most.width() || image.height() > most.height())
        image = image.scaled(most, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    auto decoded = picture(image);
    if (!isDrawing) {
        decoded.fullWidth = full.width();
        decoded.fullHeight = full.height();
    }
    return decoded;
}

} // namespace fennik::app::PictureDecoding
