#include "app/ui/dialogs/PasswordDialog.h"

#include "app/ui/dialogs/PasswordField.h"

namespace fennik::ui {

namespace {

DialogCard::Texts textsOf(const QString& archive, const QString& encryption) {
    return {.icon = QStringLiteral("lock-keyhole"),
            .tone = DialogCard::Tone::caution,
            .title = QStringLiteral("Archiv je chráněný heslem."),
            .subtitle =
                encryption.isEmpty() ? archive : archive + QStringLiteral(" · ") + encryption,
            .confirm = QStringLiteral("Otevřít")};
}

} // namespace

PasswordDialog::PasswordDialog(const QString& archive, const QString& encryption,
                               const Theme& theme, Icons& icons, QWidget* parent)
    : FieldDialog(textsOf(archive, encryption), theme, icons, parent),
      field_(
          new PasswordField(QStringLiteral("Heslo"), {.showButton = true}, theme, icons, nullptr)) {
    field_->setObjectName(QStringLiteral("passwordField"));
    showField(field_, QStringLiteral("Heslo platí, dokud je archiv v panelu otevřený. Nikam se "
                                     "neukládá."));
}

void PasswordDialog::showWrong(const QString& tried) {
    field_->setText(tried);
    setOutcome(OutcomeLine::Kind::error, QStringLiteral("Špatné heslo."));
    field_->selectAll();
}

bool PasswordDialog::isComplete() const {
    return !text().isEmpty(); // blanks are a password too
}

} // namespace fennik::ui
