#pragma once

#include "app/ui/dialogs/FieldDialog.h"

namespace fennik::ui {

class PasswordField;

/// Asks for the password of an archive.
class PasswordDialog final : public FieldDialog {
    Q_OBJECT

public:
    /// `archive` is a name. `encryption` may be empty.
    PasswordDialog(const QString& archive, const QString& encryption, const Theme& theme,
                   Icons& icons, QWidget* parent);

    /// The last password was wrong, that was `tried`: it stands selected, so that another one takes
    /// its place.
    void showWrong(const QString& tried);

protected:
    bool isComplete() const override;

private:
    PasswordField* field_;
};

} // namespace fennik::ui
