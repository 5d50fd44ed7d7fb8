#include "app/ui/settings/ShortcutNote.h"

#include "app/ui/AccessibleRole.h"
#include "app/ui/KeyButton.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>

namespace fennik::ui {

namespace {

constexpr double iconSide = 16;
constexpr double textLeft = 46; // below the titles of the actions
constexpr double buttonHeight = 26;

} // namespace

ShortcutNote::ShortcutNote(const Theme& theme, Icons& icons, QWidget* parent)
    : QWidget(parent),
      theme_(theme),
      icons_(icons),
      text_(new QLabel(this)),
      decline_(new KeyButton(QStringLiteral("Nechat být"), {}, theme, this)),
      confirm_(new KeyButton(QStringLiteral("Přeřadit"), {}, theme, this)) {
    setAccessibleRole(*this, QAccessible::AlertMessage);
    setObjectName(QStringLiteral("shortcutNote"));
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    text_->setFont(theme.font(FontRole::detail, QFont::Medium));
    text_->setMinimumHeight(theme.px(buttonHeight));
    decline_->setObjectName(QStringLiteral("declineShortcut"));
    confirm_->setObjectName(QStringLiteral("confirmShortcut"));
    decline_->setLook(KeyButtonLook::small);
    confirm_->setLook(KeyButtonLook::primary);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(theme.px(textLeft + iconSide + 10), theme.px(7), theme.px(16),
                            theme.px(7));
    row->setSpacing(theme.px(8));
    row->addWidget(text_, 1);
    for (auto* button : {decline_, confirm_}) {
        button->setFixedHeight(theme.px(buttonHeight));
        button->setFocusPolicy(Qt::StrongFocus);
        row->addWidget(button);
    }
    connect(decline_, &QAbstractButton::clicked, this, &ShortcutNote::declined);
    connect(confirm_, &QAbstractButton::clicked, this, &ShortcutNote::confirmed);
    connect(&theme, &Theme::changed, this, &ShortcutNote::takeTheme);
    hide();
}

void ShortcutNote::ask(const QString& question) {
    showText(Kind::question, question);
    confirm_->setFocus(Qt::OtherFocusReason);
}

void ShortcutNote::refuse(const QString& reason) {
    showText(Kind::refusal, reason);
}

void ShortcutNote::showText(Kind kind, const QString& text) {
    kind_ = kind;
    text_->setText(text);
    setAccessibleName(text);
    for (auto* button : {decline_, confirm_})
        button->setVisible(kind == Kind::question);
    takeTheme();
    show();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void ShortcutNote::takeTheme() {
    const auto& tokens = theme_.tokens();
    auto colors = text_->palette();
    colors.setColor(QPalette::WindowText, kind_ == Kind::question ? tokens.warn : tokens.err);
    text_->setPalette(colors);
    update();
}

void ShortcutNote::keyPressEvent(QKeyEvent* event) {
    // No key of the row behind may mean something while the question waits.
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape)
        emit declined();
    else if (isEnter && !event->isAutoRepeat())
        (decline_->hasFocus() ? decline_ : confirm_)->click();
}

void ShortcutNote::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    const bool isQuestion = kind_ == Kind::question;
    QPainter painter(this);
    painter.fillRect(rect(), isQuestion ? tokens.warnSoft : tokens.errSoft);
    const int side = theme_.px(iconSide);
    painter.drawPixmap(theme_.px(textLeft), (height() - side) / 2,
                       icons_.line(isQuestion ? QStringLiteral("circle-question-mark")
                                              : QStringLiteral("circle-alert"),
                                   side, isQuestion ? tokens.warn : tokens.err,
                                   devicePixelRatioF()));
}

} // namespace fennik::ui
