#pragma once

#include "app/preview/decoding/DecodingHelper.h"

/// The first page of a document.
namespace fennik::app::PageDecoding {

Decoding of(QFile& file);

} // namespace fennik::app::PageDecoding
