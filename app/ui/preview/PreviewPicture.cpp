#include "app/ui/preview/PreviewPicture.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace fennik::ui {

namespace {

constexpr double margin = 18;
constexpr double radius = 5;

} // namespace

PreviewPicture::PreviewPicture(const Theme& theme, QWidget* parent)
    : QWidget(parent), theme_(theme) {
    setObjectName(QStringLiteral("previewPicture"));
    setAccessibleName(QStringLiteral("Obrázek"));
}

void PreviewPicture::show(const app::DecodedPicture& picture) {
    const auto* pixels = reinterpret_cast<const uchar*>(picture.pixels.data()); // NOLINT: bytes
    image_ = QImage(pixels, picture.width, picture.height, QImage::Format_ARGB32).copy();
    const bool isScalable = picture.fullWidth == 0;
    whole_ = isScalable ? image_.size() : QSize(picture.fullWidth, picture.fullHeight);
    drawn_ = {};
    update();
}

void PreviewPicture::clear() {
    image_ = {};
    drawn_ = {};
}

QSize PreviewPicture::fitted() const {
    const int side = 2 * theme_.px(margin);
    const auto room = (QSizeF(width() - side, height() - side) * devicePixelRatioF()).toSize();
    const bool fits = whole_.width() <= room.width() && whole_.height() <= room.height();
    return fits ? whole_ : whole_.scaled(room, Qt::KeepAspectRatio).expandedTo({1, 1});
}

void PreviewPicture::paintEvent(QPaintEvent*) {
    const auto size = fitted();
    if (image_.isNull() || size.isEmpty())
        return;
    const double ratio = devicePixelRatioF();
    if (drawn_.size() != size) {
        drawn_ = QPixmap::fromImage(
            image_.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        drawn_.setDevicePixelRatio(ratio);
    }
    const QSizeF shown = QSizeF(size) / ratio;
    const QRectF place(qRound((width() - shown.width()) / 2),
                       qRound((height() - shown.height()) / 2), shown.width(), shown.height());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outline;
    const double round = std::min(radius, std::min(shown.width(), shown.height()) / 4);
    outline.addRoundedRect(place, round, round);
    painter.setClipPath(outline);
    painter.drawPixmap(place.topLeft(), drawn_);
    painter.setClipping(false);
    painter.strokePath(outline, theme_.tokens().line);
}

} // namespace fennik::ui
