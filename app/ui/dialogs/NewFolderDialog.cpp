#include "app/ui/dialogs/NewFolderDialog.h"

#include "app/ui/dialogs/LabelColor.h"

#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

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
    auto* label = new QLabel(QStringLiteral("Název"));
    label->setFont(theme.font(FontRole::detail, QFont::Medium));
    label->setBuddy(field);
    auto* hint = new QLabel(QStringLiteral("a/b vytvoří i podsložku"));
    hint->setFont(theme.font(FontRole::detail));
    for (auto* text : {label, hint})
        followColor(*text, theme, &Tokens::text2);
    auto* outcome = new OutcomeLine(theme, icons, nullptr);

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins({});
    layout->setSpacing(theme.px(7));
    layout->addWidget(label);
    layout->addWidget(field);
    layout->addWidget(outcome);
    layout->addWidget(hint);
    setContent(content);

    field->setText(name);
    watch(field, outcome);
}

} // namespace fennik::ui
