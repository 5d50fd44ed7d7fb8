#pragma once

#include "app/model/PanelModel.h"

#include <QString>

#include <optional>

namespace fennik::ui {

/// The name of what the panel shows: of the folder, or of the archive, wherever in it.
QString placeName(const app::PanelModel& panel);
/// The same for screen readers, who hear where in the archive too: "web.zip › css".
QString spokenPlace(const app::PanelModel& panel);
/// What all of an archive comes to: "1 204 souborů · 118 MB".
QString contentInWords(const ArchiveIndex& archive);
/// Whether nobody knows how large the item is: a compressed file does not always tell before it is
/// unpacked.
bool isSizeUnknown(const app::PanelModel& panel, const FileItemView& item);
/// The same of an item that lies in an archive, or in none.
bool isSizeUnknown(const std::optional<app::ArchiveBrowse>& archive, const FileItemView& item);
/// "tar.gz · jen pro čtení"
QString archiveBadge(const ArchiveIndex& archive);

} // namespace fennik::ui
