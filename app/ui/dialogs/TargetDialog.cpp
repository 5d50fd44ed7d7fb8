#include "app/ui/dialogs/TargetDialog.h"

#include "app/ui/PathField.h"
#include "app/ui/dialogs/ElidedLabel.h"
#include "app/ui/dialogs/LabelColor.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <utility>

namespace fennik::ui {

TargetDialog::TargetDialog(const Texts& texts, const SourceItems& sources, std::string_view target,
                           QWidget* option, const Theme& theme, Icons& icons, QWidget* parent)
    : FieldDialog(texts, theme, icons, parent),
      field_(new PathField(PathField::Place::dialog, theme, icons, this)),
      freeSpace_(new ElidedLabel({}, nullptr)) {
    setPreferredWidth(600);
    field_->setObjectName(QStringLiteral("targetField"));
    field_->setAccessibleName(QStringLiteral("Kam"));
    auto* label = new QLabel(QStringLiteral("Kam"));
    label->setFont(theme.font(FontRole::detail, QFont::Medium));
    label->setBuddy(field_);
    freeSpace_->setObjectName(QStringLiteral("freeSpace"));
    freeSpace_->setFont(theme.font(FontRole::detail));
    for (auto* text : {label, static_cast<QLabel*>(freeSpace_)})
        followColor(*text, theme, &Tokens::text2);
    auto* outcome = new OutcomeLine(theme, icons, nullptr);
    auto* hint = new OutcomeLine(theme, icons, nullptr);
    hint->setObjectName(QStringLiteral("targetHint"));
    hint->setOutcome(
        OutcomeLine::Kind::note,
        QStringLiteral("Když složka neexistuje, vytvoří se. Při shodě názvů se Fennik zeptá."));

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins({});
    layout->setSpacing(theme.px(7));
    layout->addWidget(new SourceList(sources, theme, icons, nullptr));
    layout->addSpacing(theme.px(5));
    auto* labels = new QHBoxLayout;
    labels->addWidget(label);
    labels->addStretch(1);
    labels->addWidget(freeSpace_);
    layout->addLayout(labels);
    layout->addWidget(field_);
    layout->addSpacing(theme.px(4));
    layout->addWidget(outcome);
    if (option != nullptr)
        layout->addWidget(option);
    layout->addWidget(hint);
    setContent(content);

    field_->setPath(target);
    watch(field_, outcome);
    connect(field_, &PathField::typed, this, &TargetDialog::typed);
}

void TargetDialog::setSuggestions(std::vector<std::string> paths, std::string_view currentFolder) {
    field_->setSuggestions(std::move(paths), currentFolder);
}

void TargetDialog::setFreeSpace(const QString& amount) {
    freeSpace_->setText(amount.isEmpty() ? QString() : QStringLiteral("Volno v cíli ") + amount);
}

} // namespace fennik::ui
