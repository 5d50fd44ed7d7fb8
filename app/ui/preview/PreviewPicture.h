#pragma once

#include "app/model/ports/PreviewDecoder.h"
#include "app/ui/Theme.h"

#include <QPixmap>
#include <QWidget>

namespace fennik::ui {

/// A picture, as large as its room allows, but never larger than it is.
class PreviewPicture final : public QWidget {
    Q_OBJECT

public:
    PreviewPicture(const Theme& theme, QWidget* parent);

    /// Copies the pixels.
    void show(const app::DecodedPicture& picture);
    /// Gives the memory back.
    void clear();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QSize fitted() const;

    const Theme& theme_;
    QSize whole_; ///< in the pixels of the screen
    QImage image_;
    QPixmap drawn_; ///< as it was painted last
};

} // namespace fennik::ui
