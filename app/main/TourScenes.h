#pragma once

#include "app/main/TourStage.h"

#include <span>
#include <string_view>

namespace fennik::app {

/// One view of the window, and what leads to it.
struct TourScene {
    std::string_view name; ///< of the picture
    void (*play)(TourStage& stage) = nullptr;
    /// Whether it is also shown in a small window, with text of twice the size and in high
    /// contrast.
    enum class Looks { plain, all } looks = Looks::plain;
};

/// Every view there is.
std::span<const TourScene> tourScenes();

} // namespace fennik::app
