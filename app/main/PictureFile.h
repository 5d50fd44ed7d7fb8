#pragma once

#include <QImage>

#include <expected>
#include <string>

namespace fennik::app {

/// Writes `image` as PNG to `path`, whole or not at all. An existing file is replaced only when it
/// is empty or a picture that this function wrote; nobody's own picture is ever overwritten. A
/// sentence for the user where it could not be done. Waits for the disk.
[[nodiscard]] std::expected<void, std::string> writePicture(QImage image, const std::string& path);

} // namespace fennik::app
