#pragma once

#include "app/preview/decoding/DecodingHelper.h"

#include <QImage>

/// Pictures in all formats that the toolkit knows here; of one that moves, the first.
namespace fennik::app::PictureDecoding {

Decoding of(QFile& file);

/// `image` as it is sent. It is no larger than it may be.
DecodedPicture picture(const QImage& image);

} // namespace fennik::app::PictureDecoding
