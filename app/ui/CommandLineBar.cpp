#include "app/ui/CommandLineBar.h"

#include "app/ui/AccessibleRole.h"
#include "app/ui/FieldState.h"
#include "app/ui/KeyCaps.h"
#include "app/ui/Text.h"
#include "app/ui/dialogs/ElidedLabel.h"
#include "app/ui/dialogs/LabelColor.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace fennik::ui {

namespace {

constexpr double gapAbove = 8;
constexpr double barHeight = 30;
constexpr double radius = 9;
constexpr double folderLeft = 33;
constexpr double padding = 12;
constexpr double mostShareOfFolder = 0.4;
constexpr double leastField = 240; ///< beside the hint

bool isOwnKey(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
    case Qt::Key_Tab:
        return !(event.modifiers() & ~Qt::KeypadModifier);
    case Qt::Key_Backtab:
        return !(event.modifiers() & ~Qt::ShiftModifier);
    default:
        return false;
    }
}

} // namespace

CommandLineBar::CommandLineBar(const Theme& theme, Icons& icons, QWidget* parent)
    : QWidget(parent),
      theme_(theme),
      icons_(icons),
      folder_(new ElidedLabel({}, this)),
      field_(new QLineEdit(this)) {
    setAccessibleRole(*this, QAccessible::Grouping);
    setObjectName(QStringLiteral("commandLineBar"));
    setAccessibleName(QStringLiteral("Příkazový řádek"));
    setCursor(Qt::IBeamCursor);
    folder_->setObjectName(QStringLiteral("commandFolder"));
    followColor(*folder_, theme, &Tokens::text2);
    field_->setObjectName(QStringLiteral("commandField"));
    field_->setAccessibleName(QStringLiteral("Příkaz"));
    field_->setPlaceholderText(QStringLiteral("Příkaz pro tuto složku"));
    field_->setFrame(false);
    field_->setFocusPolicy(Qt::ClickFocus);
    field_->installEventFilter(this);
    connect(field_, &QLineEdit::textChanged, this, &CommandLineBar::takeTheme);
    connect(field_, &QLineEdit::textEdited, this, [this](const QString& text) {
        // A line break would look like a blank, and hide another command behind the first one.
        if (const auto line = oneLine(text); line != text)
            field_->setText(line);
        emit edited(field_->text());
    });
    connect(&theme_, &Theme::changed, this, &CommandLineBar::takeTheme);
    takeTheme();
}

void CommandLineBar::takeTheme() {
    const auto& tokens = theme_.tokens();
    setFixedHeight(theme_.px(gapAbove) + theme_.px(barHeight));
    folder_->setFont(theme_.font(FontRole::fixedLine));
    // What stands in the empty field is no command.
    const auto role = field_->text().isEmpty() ? FontRole::detail : FontRole::fixedLine;
    field_->setFont(theme_.font(role));
    auto colours = field_->palette();
    colours.setColor(QPalette::Base, Qt::transparent);
    colours.setColor(QPalette::Text, tokens.text);
    colours.setColor(QPalette::PlaceholderText, tokens.text3);
    field_->setPalette(colours);
    update();
}

void CommandLineBar::setFolder(const QString& folder) {
    folder_->setText(folder);
    field_->setAccessibleDescription(QStringLiteral("Spustí se ve složce ") + folder);
    layOut();
}

void CommandLineBar::setHistory(std::vector<std::string> history) {
    history_ = std::move(history);
    place_ = history_.size();
}

void CommandLineBar::setLegend(const QString& key) {
    legend_ = key;
    layOut();
    update();
}

QString CommandLineBar::text() const {
    return field_->text();
}

void CommandLineBar::setText(const QString& text) {
    place_ = history_.size();
    if (text != field_->text())
        field_->setText(text);
    showIfWanted();
}

void CommandLineBar::setAlwaysShown(bool isAlwaysShown) {
    isAlwaysShown_ = isAlwaysShown;
    showIfWanted();
}

void CommandLineBar::showIfWanted() {
    const bool isInUse = window()->focusWidget() == field_ || !field_->text().isEmpty();
    setVisible(isAlwaysShown_ || isInUse);
}

void CommandLineBar::takeFocus() {
    show();
    field_->setFocus(Qt::OtherFocusReason);
}

void CommandLineBar::recall(int step) {
    const auto target = std::ptrdiff_t(place_) + step;
    if (target < 0 || target > std::ssize(history_))
        return;
    if (place_ == history_.size())
        typed_ = field_->text();
    place_ = std::size_t(target);
    field_->setText(place_ == history_.size() ? typed_ : fromUtf8(history_[place_]));
    emit edited(field_->text());
}

bool CommandLineBar::press(int key) {
    switch (key) {
    case Qt::Key_Up:
        recall(-1);
        break;
    case Qt::Key_Down:
        recall(1);
        break;
    case Qt::Key_Escape:
        emit left();
        break;
    case Qt::Key_Tab:
        emit forwardRequested();
        break;
    case Qt::Key_Backtab:
        emit backRequested();
        break;
    default:
        emit runRequested();
        break;
    }
    return true;
}

bool CommandLineBar::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        showIfWanted();
        layOut();
        update();
        break;
    case QEvent::ShortcutOverride:
        if (isOwnKey(*static_cast<QKeyEvent*>(event))) {
            event->accept();
            return true;
        }
        break;
    case QEvent::KeyPress: // before Tab moves the keyboard
        if (isOwnKey(*static_cast<QKeyEvent*>(event)))
            return press(static_cast<QKeyEvent*>(event)->key());
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void CommandLineBar::mousePressEvent(QMouseEvent*) {
    takeFocus();
}

QString CommandLineBar::hint() const {
    return field_->hasFocus() ? QStringLiteral("%1 spustit · ↑ historie · %2 do panelu")
                                    .arg(KeyCaps::enter, KeyCaps::escape)
                              : legend_;
}

QRect CommandLineBar::frame() const {
    return rect().adjusted(0, theme_.px(gapAbove), 0, 0);
}

int CommandLineBar::hintWidth() const {
    const QFontMetricsF metrics(theme_.font(FontRole::small));
    return int(std::ceil(metrics.horizontalAdvance(hint())));
}

void CommandLineBar::layOut() {
    const auto area = frame();
    const int left = theme_.px(folderLeft);
    const int right = width() - theme_.px(padding);
    const int folder =
        std::min(folder_->sizeHint().width(), int(width() * mostShareOfFolder) - left);
    folder_->setGeometry(left, area.y(), std::max(0, folder), area.height());
    const int fieldLeft = left + folder + theme_.px(6);
    showsHint_ = right - fieldLeft - hintWidth() >= theme_.px(leastField);
    const int fieldRight = showsHint_ ? right - hintWidth() - theme_.px(padding) : right;
    field_->setGeometry(fieldLeft, area.y() + 2, std::max(0, fieldRight - fieldLeft),
                        area.height() - 4);
}

void CommandLineBar::resizeEvent(QResizeEvent*) {
    layOut();
}

void CommandLineBar::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    const bool hasKeyboard = field_->hasFocus();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double line = hasKeyboard ? 2 : 1;
    painter.setPen(QPen(hasKeyboard ? tokens.accent : tokens.line, line));
    painter.setBrush(hasKeyboard ? tokens.field : tokens.chrome);
    painter.drawRoundedRect(QRectF(frame()).adjusted(line / 2, line / 2, -line / 2, -line / 2),
                            radius, radius);
    const int side = theme_.px(14);
    painter.drawPixmap(
        theme_.px(11), frame().center().y() - side / 2 + 1,
        icons_.line(QStringLiteral("chevron-right"), side, tokens.accentText, devicePixelRatioF()));
    if (!showsHint_)
        return;
    painter.setFont(theme_.font(FontRole::small));
    painter.setPen(tokens.text3);
    painter.drawText(frame().adjusted(0, 0, -theme_.px(padding), 0),
                     Qt::AlignRight | Qt::AlignVCenter, hint());
}

} // namespace fennik::ui
