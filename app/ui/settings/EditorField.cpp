#include "app/ui/settings/EditorField.h"

#include "app/ui/KeyButton.h"
#include "app/ui/Text.h"
#include "app/ui/dialogs/LabelColor.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>

#include <algorithm>
#include <utility>

namespace fennik::ui {

namespace {

const QString standard = QStringLiteral("Výchozí textový editor");
constexpr double fieldWidth = 250;

} // namespace

EditorField::EditorField(const UiContext& context, QWidget* parent)
    : QWidget(parent),
      context_(context),
      field_(new QLineEdit(this)),
      button_(new KeyButton(QStringLiteral("Vybrat…"), {}, context.theme, this)),
      name_(new QLabel(this)) {
    const auto& theme = context.theme;
    setObjectName(QStringLiteral("editorApp"));
    field_->setObjectName(QStringLiteral("editorName"));
    field_->setPlaceholderText(standard);
    field_->setAccessibleName(QStringLiteral("Editor"));
    field_->setAccessibleDescription(QStringLiteral("Název programu nebo jeho cesta"));
    field_->setMaximumWidth(theme.px(fieldWidth));
    button_->setObjectName(QStringLiteral("chooseEditor"));
    button_->setAccessibleName(QStringLiteral("Vybrat editor"));
    button_->setFocusPolicy(Qt::StrongFocus);
    name_->setObjectName(QStringLiteral("editorHint"));
    name_->setFont(theme.font(FontRole::detail));
    name_->setWordWrap(true);
    followColor(*name_, theme, &Tokens::text3);
    auto* row = new QHBoxLayout;
    row->setSpacing(theme.px(8));
    row->addWidget(field_, 1);
    row->addWidget(button_);
    row->addStretch();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(theme.px(4));
    column->addLayout(row);
    column->addWidget(name_);
    connect(field_, &QLineEdit::textEdited, this, [this](const QString& text) {
        showName();
        emit valueChanged(text.trimmed());
    });
    connect(button_, &QAbstractButton::clicked, this, &EditorField::choose);
    showName();
    if (context_.editors != nullptr)
        context_.editors->find([life = QPointer(this)](std::vector<app::TextEditor> editors) {
            if (life)
                life->take(std::move(editors));
        });
}

QSize EditorField::sizeHint() const {
    return {context_.theme.px(fieldWidth) + button_->sizeHint().width(),
            field_->sizeHint().height() + context_.theme.px(4) + name_->sizeHint().height()};
}

void EditorField::setValue(const QString& value) {
    if (value == field_->text().trimmed())
        return;
    field_->setText(value);
    showName();
}

void EditorField::take(std::vector<app::TextEditor> editors) {
    isKnown_ = true;
    editors_ = std::move(editors);
    showName();
    if (menu_)
        fillMenu();
}

void EditorField::choose() {
    menu_ = new QMenu(this);
    menu_->setAttribute(Qt::WA_DeleteOnClose);
    fillMenu();
    menu_->popup(button_->mapToGlobal(QPoint(0, button_->height())));
}

void EditorField::fillMenu() {
    menu_->clear();
    menu_->addAction(standard, this, [this] { put({}); });
    menu_->addSeparator();
    for (const auto& editor : editors_)
        menu_->addAction(menuText(fromUtf8(editor.name)), this,
                         [this, value = fromUtf8(editor.value)] { put(value); });
    if (editors_.empty())
        menu_
            ->addAction(isKnown_ ? QStringLiteral("Žádný jiný editor tu není.")
                                 : QStringLiteral("Hledám editory…"))
            ->setEnabled(false);
}

void EditorField::put(const QString& value) {
    setValue(value);
    emit valueChanged(value);
}

void EditorField::showName() {
    const auto value = field_->text().trimmed().toStdString();
    const auto found = std::ranges::find(editors_, value, &app::TextEditor::value);
    name_->setText(found == editors_.end() ? QStringLiteral("Název programu, nebo jeho cesta.")
                                           : fromUtf8(found->name));
}

} // namespace fennik::ui
