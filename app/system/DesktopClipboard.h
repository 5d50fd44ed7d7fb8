#pragma once

#include "app/model/ports/Clipboard.h"

namespace fennik::system {

/// The clipboard of the desktop that the window is on.
class DesktopClipboard final : public app::Clipboard {
public:
    std::string text() const override;
};

} // namespace fennik::system
