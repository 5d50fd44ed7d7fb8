#pragma once

#include "app/preview/decoding/DecodingHelper.h"

/// What audio and video files say of themselves.
namespace fennik::app::MediaFacts {

Decoding of(int descriptor);

} // namespace fennik::app::MediaFacts
