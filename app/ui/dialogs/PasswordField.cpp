#include "app/ui/dialogs/PasswordField.h"

#include "app/ui/Tick.h"

#include <QAbstractButton>
#include <QPainter>

namespace fennik::ui {

namespace {

constexpr double sideRoom = 24;
constexpr double buttonSide = 26;

/// An eye that shows the text for as long as it is pressed in.
class ShowButton final : public QAbstractButton {
public:
    ShowButton(const Theme& theme, Icons& icons, QWidget* parent)
        : QAbstractButton(parent), theme_(theme), icons_(icons) {
        setObjectName(QStringLiteral("showPassword"));
        setAccessibleName(QStringLiteral("Ukázat heslo"));
        setToolTip(accessibleName());
        setCheckable(true);
        setFocusPolicy(Qt::StrongFocus);
        setAttribute(Qt::WA_Hover);
        setCursor(Qt::ArrowCursor);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        const auto& tokens = theme_.tokens();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const bool isMarked = isChecked() || (isEnabled() && underMouse());
        painter.setPen(hasFocus() ? QPen(tokens.accent, 2) : QPen(Qt::NoPen));
        painter.setBrush(!isMarked     ? QBrush(Qt::NoBrush)
                         : isChecked() ? QBrush(tokens.accentSoft)
                                       : QBrush(tokens.hover));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 5, 5);
        constexpr double disabledOpacity = 0.38;
        painter.setOpacity(isEnabled() ? 1 : disabledOpacity);
        const int side = theme_.px(16);
        painter.drawPixmap((width() - side) / 2, (height() - side) / 2,
                           icons_.line(QStringLiteral("eye"), side,
                                       isChecked() ? tokens.accentText : tokens.text2,
                                       devicePixelRatioF()));
    }

private:
    const Theme& theme_;
    Icons& icons_;
};

} // namespace

PasswordField::PasswordField(const QString& name, Parts parts, const Theme& theme, Icons& icons,
                             QWidget* parent)
    : QLineEdit(parent), theme_(theme), icons_(icons), hasLock_(parts.lock) {
    setAccessibleName(name);
    setTextMargins(hasLock_ ? theme.px(sideRoom) - theme.px(2) : 0, 0, theme.px(sideRoom), 0);
    setTextShown(false);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    if (!parts.showButton)
        return;
    showButton_ = new ShowButton(theme, icons, this);
    connect(showButton_, &QAbstractButton::toggled, this, [this](bool isShown) {
        setTextShown(isShown);
        emit textShownChanged(isShown);
    });
}

void PasswordField::setTextShown(bool isShown) {
    setEchoMode(isShown ? QLineEdit::Normal : QLineEdit::Password);
}

void PasswordField::setTicked(bool isTicked) {
    isTicked_ = isTicked;
    update();
}

void PasswordField::resizeEvent(QResizeEvent* event) {
    QLineEdit::resizeEvent(event);
    if (showButton_ == nullptr)
        return;
    const int side = theme_.px(buttonSide);
    const int inset = (height() - side) / 2;
    showButton_->setGeometry(width() - side - inset, inset, side, side);
}

void PasswordField::paintEvent(QPaintEvent* event) {
    QLineEdit::paintEvent(event);
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto color = isEnabled() ? tokens.text2 : tokens.control;
    const int side = theme_.px(16);
    if (hasLock_)
        painter.drawPixmap(
            theme_.px(9), (height() - side) / 2,
            icons_.line(QStringLiteral("lock-keyhole"), side, color, devicePixelRatioF()));
    if (isTicked_) {
        const double tick = theme_.px(14);
        drawTick(painter, QRectF(width() - theme_.px(10) - tick, (height() - tick) / 2, tick, tick),
                 tokens.ok);
    }
}

} // namespace fennik::ui
