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
    return QStringLiteral("%1 %2 · %3")
        .arg(fromUtf8(Format::grouped(count)), fromUtf8(noun),
             fromUtf8(Format::bytes(archive.totalSize())));
}

QString archiveBadge(const ArchiveIndex& archive) {
    return fromUtf8(archive.formatLabel()) + QStringLiteral(" · jen pro čtení");
}

} // namespace fennik::ui
