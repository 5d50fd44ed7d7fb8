#include "app/ui/ToastBar.h"

#include "app/ui/AccessibleRole.h"
#include "app/ui/KeyButton.h"
#include "app/ui/Shadow.h"
#include "app/ui/Text.h"

#include <QFontMetricsF>
#include <QGraphicsOpacityEffect>
#include <QPainter>

#include <cmath>

namespace fennik::ui {

namespace {

using namespace std::chrono_literals;

constexpr double radius = 9;
constexpr double padding = 12;
constexpr double textLeft = 40;
constexpr double buttonGap = 8;
constexpr double mostWidth = 560;

} // namespace

ToastBar::ToastBar(const Theme& theme, Icons& icons, QWidget* parent)
    : QWidget(parent),
      theme_(theme),
      icons_(icons),
      all_(new KeyButton(QStringLiteral("Zobrazit vše"), {}, theme, this)),
      button_(new KeyButton({}, {}, theme, this)),
      shadow_(nullptr),
      motion_(160ms, 0, this) {
    setObjectName(QStringLiteral("toastBar"));
    setAccessibleRole(*this, QAccessible::AlertMessage);
    hide();
    all_->setObjectName(QStringLiteral("toastAllLines"));
    button_->setObjectName(QStringLiteral("toastButton"));
    for (auto* button : {all_, button_})
        button->setLook(KeyButtonLook::small);
    auto* effect = new QGraphicsOpacityEffect(this);
    effect->setEnabled(false);
    setGraphicsEffect(effect);
    shadow_ = new Shadow(*this, Shadow::Depth::menu, radius, theme);

    connect(button_, &QAbstractButton::clicked, this, &ToastBar::buttonClicked);
    connect(all_, &QAbstractButton::clicked, this, [this] { emit allLinesRequested(toast_.text); });
    connect(&motion_, &Motion::moved, this, &ToastBar::setOpacity);
    connect(&motion_, &Motion::arrived, this, [this] { setVisible(motion_.value() > 0); });
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void ToastBar::showToast(const Toast& toast) {
    toast_ = toast;
    button_->setTitle(toast.button.title, toast.button.key);
    button_->setLineIcon(toast.button.icon, icons_);
    button_->setVisible(!toast.button.title.isEmpty());
    all_->setVisible(toast.text.contains(QLatin1Char('\n')));
    setAccessibleName(toast.text);
    setToolTip(toolTipText(toast.text));

    resize(sizeHint());
    int right = width() - theme_.px(buttonGap);
    for (auto* button : {button_, all_}) {
        if (button->isHidden())
            continue;
        const auto size = button->sizeHint();
        button->setGeometry(right - size.width(), (height() - size.height()) / 2, size.width(),
                            size.height());
        right -= size.width() + theme_.px(buttonGap);
    }
    raise();
    show();
    motion_.moveTo(1);
    update();
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void ToastBar::dismiss() {
    motion_.moveTo(0);
}

void ToastBar::setOpacity(double opacity) {
    auto* effect = static_cast<QGraphicsOpacityEffect*>(graphicsEffect());
    effect->setOpacity(opacity);
    effect->setEnabled(opacity < 1); // at rest nothing is painted twice
    shadow_->setOpacity(opacity);
}

QString ToastBar::firstLine() const {
    return toast_.text.section(QLatin1Char('\n'), 0, 0);
}

QString ToastBar::moreLines() const {
    const auto count = toast_.text.count(QLatin1Char('\n'));
    return count == 0 ? QString() : QStringLiteral(" a další %1").arg(count);
}

QSize ToastBar::sizeHint() const {
    int buttons = 0;
    for (const auto* button : {button_, all_}) {
        if (!button->isHidden())
            buttons += button->sizeHint().width() + theme_.px(buttonGap);
    }
    const QFontMetricsF metrics(theme_.font(FontRole::body, QFont::Medium));
    const int text = int(std::ceil(metrics.horizontalAdvance(firstLine() + moreLines()))) + 1;
    const int wanted = theme_.px(textLeft) + text + theme_.px(padding + 2) + buttons;
    const int room = parentWidget()->width() - theme_.px(16);
    return {std::min({wanted, theme_.px(mostWidth), room}), theme_.px(40)};
}

void ToastBar::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(tokens.line);
    painter.setBrush(tokens.raised);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);

    struct Sign {
        QString icon;
        QColor color;
    };
    const auto sign = toast_.kind == Kind::ok ? Sign{QStringLiteral("circle-check"), tokens.ok}
                      : toast_.kind == Kind::error
                          ? Sign{QStringLiteral("circle-alert"), tokens.err}
                          : Sign{QStringLiteral("info"), tokens.accentText};
    const int side = theme_.px(18);
    painter.drawPixmap(theme_.px(padding), (height() - side) / 2,
                       icons_.line(sign.icon, side, sign.color, devicePixelRatioF()));

    int right = width() - theme_.px(padding);
    for (const auto* button : {button_, all_}) {
        if (!button->isHidden())
            right = button->x() - theme_.px(padding);
    }
    const auto font = theme_.font(FontRole::body, QFont::Medium);
    const QFontMetricsF metrics(font);
    QRectF room(theme_.px(textLeft), 0, right - theme_.px(textLeft), height());
    const auto more = moreLines();
    const double lineRoom = room.width() - metrics.horizontalAdvance(more);
    const auto line = metrics.elidedText(firstLine(), Qt::ElideRight, lineRoom);
    painter.setFont(font);
    painter.setPen(tokens.text);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter, line);
    room.setLeft(room.left() + metrics.horizontalAdvance(line));
    painter.setPen(tokens.text2);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter, more);
}

} // namespace fennik::ui
