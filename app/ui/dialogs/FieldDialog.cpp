#include "app/ui/dialogs/FieldDialog.h"

#include "app/ui/FieldState.h"
#include "app/ui/dialogs/LabelColor.h"

#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace fennik::ui {

FieldDialog::FieldDialog(const Texts& texts, const Theme& theme, Icons& icons, QWidget* parent)
    : DialogCard(texts, theme, icons, parent) {}

void FieldDialog::showField(QLineEdit* field, const QString& hint) {
    auto* label = new QLabel(field->accessibleName());
    label->setFont(theme().font(FontRole::detail, QFont::Medium));
    label->setBuddy(field);
    auto* hintLabel = new QLabel(hint);
    hintLabel->setFont(theme().font(FontRole::detail));
    hintLabel->setWordWrap(true);
    for (auto* text : {label, hintLabel})
        followColor(*text, theme(), &Tokens::text2);
    auto* outcome = new OutcomeLine(theme(), icons(), nullptr);

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins({});
    layout->setSpacing(theme().px(7));
    layout->addWidget(label);
    layout->addWidget(field);
    layout->addWidget(outcome);
    layout->addWidget(hintLabel);
    setContent(content);
    watch(field, outcome);
}

void FieldDialog::watch(QLineEdit* field, OutcomeLine* outcome) {
    field_ = field;
    outcome_ = outcome;
    connect(field_, &QLineEdit::textChanged, this, &FieldDialog::takeText);
    connect(this, &DialogCard::confirmed, this, [this] { emit textConfirmed(text()); });
    setOutcome(OutcomeLine::Kind::note, {});
}

QString FieldDialog::text() const {
    return field_->text();
}

void FieldDialog::setOutcome(OutcomeLine::Kind kind, const QString& sentence) {
    const bool isRefused = kind == OutcomeLine::Kind::error;
    outcome_->setOutcome(kind, sentence);
    field_->setAccessibleDescription(sentence);
    showInvalid(*field_, isRefused);
    takeCompleteness();
}

void FieldDialog::setConfirming(bool isConfirming) {
    for (auto* field : findChildren<QLineEdit*>())
        field->setReadOnly(isConfirming);
}

bool FieldDialog::isComplete() const {
    return !text().trimmed().isEmpty();
}

void FieldDialog::takeCompleteness() {
    setConfirmable(outcome_->kind() != OutcomeLine::Kind::error && isComplete());
}

void FieldDialog::takeText() {
    if (const auto line = oneLine(text()); line != text()) {
        field_->setText(line);
        return;
    }
    // What was wrong with the last text need not be wrong with this one.
    if (outcome_->kind() == OutcomeLine::Kind::error || !isComplete())
        setOutcome(OutcomeLine::Kind::note, {});
    else
        takeCompleteness();
    emit textChanged(text());
}

} // namespace fennik::ui
