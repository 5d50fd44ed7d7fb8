#include "app/ui/PanelWords.h"

#include "app/ui/Text.h"
#include "core/base/CzechText.h"
#include "core/listing/Format.h"

namespace fennik::ui {

QString placeName(const app::PanelModel& panel) {
    const auto place = panel.archive() ? panel.archive()->place : panel.folder();
    return shownName(place.lastComponent());
}

QString spokenPlace(const app::PanelModel& panel) {
    const auto name = placeName(panel);
    const bool isInside = panel.archive() && !panel.archive()->inner.empty();
    return isInside ? QStringLiteral("%1 › %2").arg(name, shownName(panel.archive()->inner)) : name;
}

QString contentInWords(const ArchiveIndex& archive) {
    const auto count = archive.fileCount();
    const auto noun = pluralForm(count, {"soubor", "soubory", "souborů"});
    const auto files = fromUtf8(Format::grouped(count)) + QLatin1Char(' ') + fromUtf8(noun);
    if (archive.facts().isRaw() && archive.totalSize() == 0)
        return files;
    return files + QStringLiteral(" · ") + fromUtf8(Format::bytes(archive.totalSize()));
}

bool isSizeUnknown(const app::PanelModel& panel, const FileItemView& item) {
    return panel.archive() && panel.archive()->index->facts().isRaw() && item.size == 0;
}

QString archiveBadge(const ArchiveIndex& archive) {
    return fromUtf8(archive.formatLabel()) + QStringLiteral(" · jen pro čtení");
}

} // namespace fennik::ui
