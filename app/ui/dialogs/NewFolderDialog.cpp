#include "app/ui/dialogs/NewFolderDialog.h"

#include <QLineEdit>

namespace fennik::ui {

NewFolderDialog::NewFolderDialog(const QString& folder, const QString& name, const Theme& theme,
                                 Icons& icons, QWidget* parent)
    : FieldDialog({.icon = QStringLiteral("folder-plus"),
                   .title = QStringLiteral("Nová složka"),
                   .subtitle = QStringLiteral("ve složce „%1“").arg(folder),
                   .confirm = QStringLiteral("Vytvořit")},
                  theme, icons, parent) {
    auto* field = new QLineEdit;
    field->setObjectName(QStringLiteral("newFolderField"));
    field->setAccessibleName(QStringLiteral("Název"));
    field->setText(name);
    showField(field, QStringLiteral("a/b vytvoří i podsložku"));
}

} // namespace fennik::ui
