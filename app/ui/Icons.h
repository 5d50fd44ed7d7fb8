#pragma once

#include "app/ui/FileLook.h"
#include "app/ui/Theme.h"

#include <QColor>
#include <QHash>
#include <QPixmap>
#include <QString>

namespace fennik::ui {

/// Whether the shapes that a line icon encloses are filled with its colour.
enum class IconFill { none, solid };
/// Where a file icon stands, which decides its colours.
enum class IconGround { panel, panelInactive, accent };
/// The badge in the corner of a file icon.
enum class IconBadge { none, link, broken };

/// Draws the icons and keeps what it has drawn, each at the very size and colours asked for. Main
/// thread only.
class Icons {
public:
    explicit Icons(const Theme& theme);

    /// A line icon in one colour; `size` in device-independent pixels.
    QPixmap line(const QString& name, int size, const QColor& color, double pixelRatio,
                 IconFill fill = IconFill::none);
    /// The two-coloured icon of an item in a panel.
    QPixmap file(FileLook look, IconBadge badge, IconGround ground, int size, double pixelRatio);
    /// The program's own icon.
    QPixmap program(int size, double pixelRatio);

private:
    const Theme& theme_;
    QHash<QString, QPixmap> drawn_;
};

} // namespace fennik::ui
