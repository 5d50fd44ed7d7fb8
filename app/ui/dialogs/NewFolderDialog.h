#pragma once

#include "app/ui/dialogs/FieldDialog.h"

namespace fennik::ui {

/// Asks for the name of a new folder.
class NewFolderDialog final : public FieldDialog {
    Q_OBJECT

public:
    /// `folder` is the name of the one it is made in, `name` what was typed already.
    NewFolderDialog(const QString& folder, const QString& name, const Theme& theme, Icons& icons,
                    QWidget* parent);
};

} // namespace fennik::ui
