#pragma once

#include "app/ui/dialogs/TargetDialog.h"

class QCheckBox;

namespace fennik::ui {

/// Asks where archives, or entries of an open one, are to be unpacked.
class ExtractDialog final : public TargetDialog {
    Q_OBJECT

public:
    enum class OwnFolder { no, yes };

    /// Whole archives. `target` is a path in bytes, or what was typed already.
    ExtractDialog(const SourceItems& archives, const QString& subtitle, std::string_view target,
                  OwnFolder ownFolder, const Theme& theme, Icons& icons, QWidget* parent);
    /// Entries of the archive called `archive`, which go straight into the target.
    ExtractDialog(const QString& archive, const SourceItems& entries, const QString& subtitle,
                  std::string_view target, const Theme& theme, Icons& icons, QWidget* parent);

    /// Whether each archive goes into a folder of its own.
    bool usesOwnFolder() const;

private:
    ExtractDialog(const Texts& texts, const SourceItems& sources, std::string_view target,
                  QCheckBox* ownFolder, const Theme& theme, Icons& icons, QWidget* parent);

    QCheckBox* ownFolder_; ///< null where there is nothing to choose
};

} // namespace fennik::ui
