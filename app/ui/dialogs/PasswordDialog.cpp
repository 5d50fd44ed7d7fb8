#include "app/ui/dialogs/PasswordDialog.h"

#include "app/ui/dialogs/LabelColor.h"
#include "app/ui/dialogs/PasswordField.h"

#include <QLabel>
#include <QVBoxLayout>

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
    auto* label = new QLabel(QStringLiteral("Heslo"));
    label->setFont(theme.font(FontRole::detail, QFont::Medium));
    label->setBuddy(field_);
    auto* hint = new QLabel(
        QStringLiteral("Heslo platí, dokud je archiv v panelu otevřený. Nikam se neukládá."));
    hint->setFont(theme.font(FontRole::detail));
    hint->setWordWrap(true);
    for (auto* text : {label, hint})
        followColor(*text, theme, &Tokens::text2);
    auto* outcome = new OutcomeLine(theme, icons, nullptr);

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins({});
    layout->setSpacing(theme.px(7));
    layout->addWidget(label);
    layout->addWidget(field_);
    layout->addWidget(outcome);
    layout->addWidget(hint);
    setContent(content);
    watch(field_, outcome);
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
