#pragma once

#include "app/ui/FileLook.h"
#include "app/ui/Icons.h"
#include "app/ui/Theme.h"
#include "core/base/FileUrl.h"
#include "core/operations/TransferRequest.h"

#include <QPixmap>

#include <memory>
#include <vector>

class QDropEvent;
class QMimeData;

/// Files that are dragged, within the window or from one program to another. Main thread only.
namespace fennik::ui::FileDrag {

/// The files as other programs understand them.
std::unique_ptr<QMimeData> data(const std::vector<FileUrl>& files);
/// The files that are being dragged; none where it is something else.
std::vector<FileUrl> files(const QMimeData& data);
/// Shift moves, else it is a copy, as it is where whoever drags does not let go of the files.
TransferKind kind(const QDropEvent& event);

/// What hangs at the mouse: an icon, and the name or the number of the files.
QPixmap picture(const std::vector<FileUrl>& files, FileLook look, const Theme& theme, Icons& icons,
                double pixelRatio);

} // namespace fennik::ui::FileDrag
