#include "app/ui/dialogs/ExtractDialog.h"

#include "app/ui/Text.h"
#include "app/ui/dialogs/CheckBox.h"
#include "core/base/CzechText.h"
#include "core/listing/Format.h"

namespace fennik::ui {

namespace {

DialogCard::Texts textsOf(const QString& what, const QString& subtitle) {
    return {.icon = QStringLiteral("package-open"),
            .title = QStringLiteral("Rozbalit ") + what,
            .subtitle = subtitle,
            .confirm = QStringLiteral("Rozbalit")};
}

/// "2 archivy", or the name of the only one between quotes.
QString inWords(const SourceItems& archives) {
    if (archives.count == 1)
        return archives.inWords();
    return fromUtf8(Format::grouped(archives.count)) + QLatin1Char(' ') +
           fromUtf8(pluralForm(archives.count, {"archiv", "archivy", "archivů"}));
}

} // namespace

ExtractDialog::ExtractDialog(const SourceItems& archives, const QString& subtitle,
                             std::string_view target, OwnFolder ownFolder, const Theme& theme,
                             Icons& icons, QWidget* parent)
    : ExtractDialog(textsOf(inWords(archives), subtitle), archives, target,
                    new CheckBox(QStringLiteral("Každý archiv do vlastní složky"), theme, nullptr),
                    theme, icons, parent) {
    ownFolder_->setObjectName(QStringLiteral("ownFolder"));
    ownFolder_->setChecked(ownFolder == OwnFolder::yes);
}

ExtractDialog::ExtractDialog(const QString& archive, const SourceItems& entries,
                             const QString& subtitle, std::string_view target, const Theme& theme,
                             Icons& icons, QWidget* parent)
    : ExtractDialog(textsOf(QStringLiteral("%1 z „%2“").arg(entries.inWords(), archive), subtitle),
                    entries, target, nullptr, theme, icons, parent) {}

ExtractDialog::ExtractDialog(const Texts& texts, const SourceItems& sources,
                             std::string_view target, QCheckBox* ownFolder, const Theme& theme,
                             Icons& icons, QWidget* parent)
    : TargetDialog(texts, sources, target, ownFolder, theme, icons, parent),
      ownFolder_(ownFolder) {}

bool ExtractDialog::usesOwnFolder() const {
    return ownFolder_ != nullptr && ownFolder_->isChecked();
}

} // namespace fennik::ui
