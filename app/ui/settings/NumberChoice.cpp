#include "app/ui/settings/NumberChoice.h"

#include "app/ui/dialogs/LabelColor.h"
#include "app/ui/settings/DropDown.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QRegularExpressionValidator>

#include <algorithm>
#include <optional>

namespace fennik::ui {

namespace {

constexpr double fieldWidth = 76;

/// What may be typed.
QRegularExpression formOf(NumberChoice::Numbers numbers) {
    return QRegularExpression(numbers == NumberChoice::Numbers::whole
                                  ? QStringLiteral("\\d{0,6}")
                                  : QStringLiteral("\\d{0,6}([,.]\\d{0,2})?"));
}

/// As Czechs write it; nothing while no digit has been typed.
std::optional<double> numberIn(QString text) {
    bool isNumber = false;
    const double number =
        QLocale::c().toDouble(text.replace(QLatin1Char(','), QLatin1Char('.')), &isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

QString shown(double number) {
    return QLocale::c().toString(number, 'g', 8).replace(QLatin1Char('.'), QLatin1Char(','));
}

QLabel* word(const QString& text, const Theme& theme, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setFont(theme.font(FontRole::body));
    label->setVisible(!text.isEmpty());
    followColor(*label, theme, &Tokens::text);
    return label;
}

} // namespace

NumberChoice::NumberChoice(const Texts& texts, const std::vector<Choice>& choices, Numbers numbers,
                           const Theme& theme, Icons& icons, QWidget* parent)
    : QWidget(parent),
      choices_(choices),
      list_(new DropDown(texts.name, theme, icons, this)),
      own_(new QWidget(this)),
      field_(new QLineEdit(own_)) {
    for (const auto& choice : choices_)
        list_->addItem(choice.title);
    list_->addItem(QStringLiteral("vlastní…"));
    field_->setObjectName(QStringLiteral("ownNumber"));
    field_->setAccessibleName(
        QStringList{texts.name, QStringLiteral("vlastní hodnota"), texts.unit}.join(
            QStringLiteral(" ")));
    field_->setFixedWidth(theme.px(fieldWidth));
    field_->setAlignment(Qt::AlignRight);
    field_->setValidator(new QRegularExpressionValidator(formOf(numbers), field_));
    auto* ownRow = new QHBoxLayout(own_);
    ownRow->setContentsMargins({});
    ownRow->setSpacing(theme.px(8));
    ownRow->addWidget(field_);
    ownRow->addWidget(word(texts.unit, theme, own_));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(theme.px(8));
    row->addWidget(word(texts.before, theme, this));
    row->addWidget(list_);
    row->addWidget(own_);
    row->addWidget(word(texts.after, theme, this));
    row->addStretch();
    showOwn(false);
    connect(list_, &QComboBox::activated, this, [this](int index) {
        const bool isOwn = index == int(choices_.size());
        showOwn(isOwn);
        if (isOwn) {
            field_->setFocus(Qt::OtherFocusReason);
            field_->selectAll();
            return;
        }
        value_ = choices_[std::size_t(index)].value;
        showNumber();
        emit valueChanged(value_);
    });
    connect(field_, &QLineEdit::textEdited, this, &NumberChoice::takeOwn);
    connect(field_, &QLineEdit::editingFinished, this, &NumberChoice::showNumber);
}

void NumberChoice::setValue(double value) {
    if (value == value_)
        return;
    value_ = value;
    showNumber();
    const auto found = std::ranges::find(choices_, value, &Choice::value);
    list_->setCurrentIndex(int(found - choices_.begin()));
    showOwn(found == choices_.end());
}

void NumberChoice::showOwn(bool isOwn) {
    own_->setVisible(isOwn);
}

void NumberChoice::showNumber() {
    field_->setText(shown(value_));
}

void NumberChoice::takeOwn() {
    const auto number = numberIn(field_->text());
    if (!number || *number == value_)
        return;
    value_ = *number;
    emit valueChanged(value_);
}

} // namespace fennik::ui
