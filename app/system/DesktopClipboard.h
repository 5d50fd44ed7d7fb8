#pragma once

#include "app/model/ports/Clipboard.h"

namespace fennik::system {

/// The clipboard of the desktop that the window is on.
class DesktopClipboard final : public app::Clipboard {
public:
    std::string text() const override;
    void setText(const std::string& text) override;
    Files files() const override;
    void setFiles(const std::vector<FileUrl>& files) override;
};

} // namespace fennik::system
