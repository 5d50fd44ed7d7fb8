#include "app/ui/settings/SettingsForm.h"

#include "app/ui/dialogs/CheckBox.h"
#include "app/ui/dialogs/LabelColor.h"

#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <string>

namespace fennik::ui {

namespace {

constexpr double labelWidth = 150;
constexpr double hintLeft = 26; // below the words of a check box

} // namespace

SettingsForm::SettingsForm(const UiContext& context, QWidget* parent)
    : QWidget(parent), context_(context), rows_(new QFormLayout(this)) {
    const auto& theme = context.theme;
    const int side = theme.px(24);
    rows_->setContentsMargins(side, theme.px(18), side, theme.px(18));
    rows_->setHorizontalSpacing(theme.px(18));
    rows_->setVerticalSpacing(theme.px(16));
    rows_->setLabelAlignment(Qt::AlignTop);
    rows_->setRowWrapPolicy(QFormLayout::WrapLongRows);
    rows_->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
}

QLabel* SettingsForm::addRow(const QString& label, QWidget* field) {
    auto* words = new QLabel(label, this);
    const auto& theme = context_.theme;
    words->setFont(theme.font(FontRole::body));
    words->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    words->setMinimumWidth(theme.px(labelWidth));
    // Beside the first line of what is set.
    const auto* column = qobject_cast<const QVBoxLayout*>(field->layout());
    const auto first = column == nullptr ? field->sizeHint() : column->itemAt(0)->sizeHint();
    words->setFixedHeight(std::max(first.height(), words->sizeHint().height()));
    followColor(*words, theme, &Tokens::text2);
    rows_->addRow(words, field);
    return words;
}

void SettingsForm::setStacked(bool isStacked) {
    rows_->setRowWrapPolicy(isStacked ? QFormLayout::WrapAllRows : QFormLayout::WrapLongRows);
    for (int row = 0; row < rows_->rowCount(); ++row) {
        auto* words = static_cast<QLabel*>(rows_->itemAt(row, QFormLayout::LabelRole)->widget());
        words->setMinimumWidth(isStacked ? 0 : context_.theme.px(labelWidth));
        words->setAlignment((isStacked ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    }
}

void SettingsForm::addSwitch(const QString& label, const app::SettingKey<bool>& key,
                             const QString& title, const QString& name, std::string_view hintText) {
    const bool isNewRow = !label.isEmpty();
    if (isNewRow) {
        switches_ = new QVBoxLayout(new QWidget(this));
        switches_->setContentsMargins({});
        switches_->setSpacing(0);
    }
    auto* column = switches_;
    auto* box = new CheckBox(title, context_.theme, column->parentWidget());
    box->setObjectName(name);
    column->addWidget(box);
    if (!hintText.empty()) {
        auto* below = hint({});
        below->setIndent(context_.theme.px(hintLeft));
        column->addWidget(below);
        follow([this, below, box, text = std::string(hintText)] {
            below->setText(context_.keys().sentence(text));
            box->setAccessibleDescription(below->text());
        });
    }
    connect(box, &QAbstractButton::clicked, this,
            [this, key](bool isChecked) { put(key, isChecked); });
    follow([this, box, key] { box->setChecked(context_.app.settings().get(key)); });
    if (isNewRow)
        addRow(label, column->parentWidget());
}

QLabel* SettingsForm::hint(const QString& text) {
    auto* label = new QLabel(text, this);
    label->setFont(context_.theme.font(FontRole::detail));
    label->setWordWrap(true);
    followColor(*label, context_.theme, &Tokens::text3);
    return label;
}

void SettingsForm::follow(const std::function<void()>& show) {
    show();
    connect(&context_.app, &app::AppModel::changed, this, [show](app::AppChanges changes) {
        if (changes.testFlag(app::AppChange::settings))
            show();
    });
    connect(&context_.shortcuts, &app::ShortcutStore::changed, this, show);
}

} // namespace fennik::ui
