#include "app/ui/dialogs/PackDialog.h"

#include "app/ui/FieldState.h"
#include "app/ui/Text.h"
#include "app/ui/dialogs/ArchiveNameField.h"
#include "app/ui/dialogs/CheckBox.h"
#include "app/ui/dialogs/ElidedLabel.h"
#include "app/ui/dialogs/LabelColor.h"
#include "app/ui/dialogs/LevelSlider.h"
#include "app/ui/dialogs/PasswordField.h"
#include "app/ui/dialogs/SegmentedControl.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace fennik::ui {

namespace {

using Place = app::PackAnswer::Place;
using Availability = SegmentedControl::Availability;

constexpr int leastLevel = 0;
constexpr int mostLevel = 9;

DialogCard::Texts textsOf(const SourceItems& sources, const QString& subtitle) {
    return {.icon = QStringLiteral("archive"),
            .title = QStringLiteral("Zabalit ") + sources.inWords(),
            .subtitle = subtitle,
            .hintIcon = QStringLiteral("info"),
            .hint = QStringLiteral("Balení poběží ve frontě operací."),
            .confirm = QStringLiteral("Zabalit")};
}

QString levelText(int level) {
    constexpr int fastest = 1;
    constexpr int usual = 6;
    switch (level) {
    case leastLevel:
        return QStringLiteral("0 · jen uložit");
    case fastest:
        return QStringLiteral("1 · nejrychlejší");
    case usual:
        return QStringLiteral("6 · běžná");
    case mostLevel:
        return QStringLiteral("9 · nejmenší");
    default:
        return QString::number(level);
    }
}

/// As the segments call them.
QString titleOf(ArchiveFormat format) {
    return format == ArchiveFormat::zip ? QStringLiteral("ZIP") : fromUtf8(extensionOf(format));
}

std::vector<SegmentedControl::Choice> formats() {
    std::vector<SegmentedControl::Choice> choices;
    for (const auto format : allArchiveFormats)
        choices.push_back({.title = titleOf(format)});
    return choices;
}

std::vector<SegmentedControl::Choice> places(const app::PackDialog& dialog) {
    const auto& other = dialog.other;
    return {{.title = QStringLiteral("Sem"), .detail = shownName(dialog.here.lastComponent())},
            {.title = QStringLiteral("Do druhého panelu"),
             .detail = other ? shownName(other->lastComponent()) : QString(),
             .availability = other ? Availability::available : Availability::unavailable}};
}

/// Without the extension that goes with the format.
std::string_view stemOf(const app::PackAnswer& answer) {
    std::string_view stem = answer.name;
    const auto extension = extensionOf(answer.options.format);
    if (stem.size() > extension.size() && stem.ends_with(extension) &&
        stem[stem.size() - extension.size() - 1] == '.')
        stem.remove_suffix(extension.size() + 1);
    return stem;
}

QLabel* heading(const QString& text, QWidget* buddy, const Theme& theme) {
    auto* label = new QLabel(text);
    label->setFont(theme.font(FontRole::detail, QFont::Medium));
    label->setBuddy(buddy);
    followColor(*label, theme, &Tokens::text2);
    return label;
}

QLabel* legend(const QString& text, const Theme& theme) {
    auto* label = new ElidedLabel(text, nullptr);
    label->setFont(theme.font(FontRole::small));
    followColor(*label, theme, &Tokens::text3);
    return label;
}

/// Both at the ends of one line.
QHBoxLayout* line(QWidget* left, QWidget* right) {
    auto* row = new QHBoxLayout;
    row->addWidget(left);
    row->addStretch(1);
    row->addWidget(right);
    return row;
}

} // namespace

PackDialog::PackDialog(const app::PackDialog& dialog, const SourceItems& sources,
                       const QString& subtitle, const Theme& theme, Icons& icons, QWidget* parent)
    : FieldDialog(textsOf(sources, subtitle), theme, icons, parent),
      name_(new ArchiveNameField(stemOf(dialog.answer), theme, nullptr)),
      format_(new SegmentedControl(QStringLiteral("Formát"), formats(), theme, icons, nullptr)),
      levelText_(new QLabel),
      level_(new LevelSlider(QStringLiteral("Komprese"), leastLevel, mostLevel, theme, nullptr)),
      place_(new SegmentedControl(QStringLiteral("Kam"), places(dialog), theme, icons, nullptr)),
      password_(new PasswordField(QStringLiteral("Heslo"), {.lock = true, .showButton = true},
                                  theme, icons, nullptr)),
      repeated_(new PasswordField(QStringLiteral("Heslo ještě jednou"), {.lock = true}, theme,
                                  icons, nullptr)),
      aboutPassword_(new OutcomeLine(theme, icons, nullptr)),
      skipJunk_(new CheckBox(QStringLiteral("Vynechat .DS_Store, __MACOSX a ._* (smetí z Macu)"),
                             theme, nullptr)) {
    setPreferredWidth(560);
    name_->setObjectName(QStringLiteral("archiveName"));
    name_->setAccessibleName(QStringLiteral("Název archivu"));
    format_->setObjectName(QStringLiteral("archiveFormat"));
    level_->setObjectName(QStringLiteral("packLevel"));
    place_->setObjectName(QStringLiteral("packPlace"));
    password_->setObjectName(QStringLiteral("packPassword"));
    repeated_->setObjectName(QStringLiteral("packPasswordAgain"));
    aboutPassword_->setObjectName(QStringLiteral("aboutPassword"));
    skipJunk_->setObjectName(QStringLiteral("skipJunk"));
    // Large letters in a small window cut it off rather than everything beside it.
    skipJunk_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    levelText_->setFont(theme.font(FontRole::detail, QFont::DemiBold));
    followColor(*levelText_, theme, &Tokens::text);

    auto* outcome = new OutcomeLine(theme, icons, nullptr);
    setContent(makeContent(outcome));
    watch(name_, outcome);
    fill(dialog.answer);

    connect(format_, &SegmentedControl::chosenChanged, this, &PackDialog::takeFormat);
    connect(level_, &QAbstractSlider::valueChanged, this, &PackDialog::takeLevel);
    for (auto* field : {password_, repeated_})
        connect(field, &QLineEdit::textChanged, this, &PackDialog::takePasswords);
    connect(password_, &PasswordField::textShownChanged, repeated_, &PasswordField::setTextShown);
    connect(place_, &SegmentedControl::chosenChanged, this, &PackDialog::tellAnswer);
    connect(skipJunk_, &QCheckBox::toggled, this, &PackDialog::tellAnswer);
    connect(this, &FieldDialog::textChanged, this, &PackDialog::tellAnswer);
    connect(this, &DialogCard::confirmed, this, [this] { emit answerConfirmed(answer()); });
}

QWidget* PackDialog::makeContent(OutcomeLine* outcome) {
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins({});
    layout->setSpacing(theme().px(6));
    const auto part = [&] { layout->addSpacing(theme().px(6)); };
    layout->addWidget(heading(QStringLiteral("Název archivu"), name_, theme()));
    layout->addWidget(name_);
    layout->addWidget(outcome);
    layout->addSpacing(theme().px(2));
    layout->addWidget(heading(QStringLiteral("Formát"), format_, theme()));
    layout->addWidget(format_);
    part();
    layout->addLayout(line(heading(QStringLiteral("Komprese"), level_, theme()), levelText_));
    layout->addWidget(level_);
    layout->addSpacing(-theme().px(3));
    layout->addLayout(
        line(legend(levelText(leastLevel), theme()), legend(levelText(mostLevel), theme())));
    part();
    layout->addWidget(heading(QStringLiteral("Kam"), place_, theme()));
    layout->addWidget(place_);
    part();
    auto* passwordHeading = new QHBoxLayout;
    passwordHeading->setSpacing(theme().px(4));
    passwordHeading->addWidget(heading(QStringLiteral("Heslo"), password_, theme()));
    passwordHeading->addWidget(legend(QStringLiteral("(nepovinné, AES-256, jen ZIP)"), theme()));
    passwordHeading->addSpacing(theme().px(10));
    passwordHeading->addWidget(aboutPassword_, 1);
    layout->addLayout(passwordHeading);
    auto* passwords = new QHBoxLayout;
    passwords->setSpacing(theme().px(16));
    passwords->addWidget(password_, 1);
    passwords->addWidget(repeated_, 1);
    layout->addLayout(passwords);
    layout->addSpacing(theme().px(3));
    layout->addWidget(skipJunk_);
    // Who types a password goes on to repeat it.
    QWidget::setTabOrder(password_, repeated_);
    QWidget::setTabOrder(repeated_, password_->showButton());
    QWidget::setTabOrder(password_->showButton(), skipJunk_);
    return content;
}

void PackDialog::fill(const app::PackAnswer& answer) {
    const auto format = std::ranges::find(allArchiveFormats, answer.options.format);
    format_->choose(int(format - allArchiveFormats.begin()));
    level_->setValue(answer.options.level);
    place_->choose(answer.place == Place::here ? 0 : 1);
    password_->setText(fromUtf8(answer.options.password));
    repeated_->setText(password_->text());
    skipJunk_->setChecked(answer.options.skipJunk);
    name_->setExtension(extensionOf(answer.options.format));
    levelText_->setText(levelText(level_->value()));
    takePasswords();
}

app::PackAnswer PackDialog::answer() const {
    return {.name = name_->name(),
            .place = place_->chosen() == 0 ? Place::here : Place::other,
            .options = {.format = allArchiveFormats[std::size_t(format_->chosen())],
                        .level = level_->value(),
                        .password = takesPassword() ? password_->text().toStdString() : "",
                        .skipJunk = skipJunk_->isChecked()}};
}

bool PackDialog::takesPassword() const {
    return allArchiveFormats[std::size_t(format_->chosen())] == ArchiveFormat::zip;
}

bool PackDialog::passwordsAgree() const {
    return password_->text() == repeated_->text();
}

bool PackDialog::isComplete() const {
    return FieldDialog::isComplete() && (!takesPassword() || passwordsAgree());
}

void PackDialog::takeFormat() {
    name_->setExtension(extensionOf(answer().options.format));
    takePasswords();
}

void PackDialog::takeLevel() {
    levelText_->setText(levelText(level_->value()));
    tellAnswer();
}

void PackDialog::takePasswords() {
    const bool areTaken = takesPassword();
    const bool agree = passwordsAgree();
    for (auto* field : {password_, repeated_})
        field->setEnabled(areTaken);
    repeated_->setTicked(areTaken && agree && !password_->text().isEmpty());
    // Nothing is wrong yet with a password that is still being repeated.
    const bool isWrong = areTaken && !agree && !password_->text().startsWith(repeated_->text());
    QString sentence;
    if (!areTaken)
        sentence = QStringLiteral("Heslo umí jen formát ZIP.");
    else if (!agree)
        sentence = QStringLiteral("Hesla se neshodují.");
    aboutPassword_->setOutcome(isWrong ? OutcomeLine::Kind::error : OutcomeLine::Kind::note,
                               sentence);
    showInvalid(*repeated_, isWrong);
    for (auto* field : {password_, repeated_})
        field->setAccessibleDescription(sentence);
    takeCompleteness();
    tellAnswer();
}

void PackDialog::tellAnswer() {
    emit answerChanged(answer());
}

} // namespace fennik::ui
