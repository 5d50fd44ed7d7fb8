#include "app/ui/dialogs/DialogHost.h"

#include "app/ui/Shadow.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace fennik::ui {

namespace {

/// How dense the scrim is through which the content is to be read.
constexpr float lightScrim = 0.16F;
constexpr float darkScrim = 0.24F;

} // namespace

DialogHost::DialogHost(const Theme& theme, QWidget* content) : QWidget(content), theme_(theme) {
    setObjectName(QStringLiteral("dialogHost"));
    setFocusPolicy(Qt::NoFocus);
    hide();
    content->installEventFilter(this);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void DialogHost::open(DialogCard* card, std::function<QRect()> beside) {
    beside_ = std::move(beside);
    if (!card_)
        returnTo_ = QApplication::focusWidget();
    auto* replaced = card_.data();
    card_ = card;
    card->setParent(this);
    new Shadow(*card, Shadow::Depth::dialog, 12, theme_);
    connect(card, &DialogCard::heightChanged, this, &DialogHost::place);
    setGeometry(parentWidget()->rect());
    place();
    card->show();
    raise();
    show();
    card->takeFocus();
    drop(replaced);
}

void DialogHost::close() {
    if (!card_)
        return;
    // Hiding what has the keyboard would pass it on to whatever comes next.
    if (returnTo_)
        returnTo_->setFocus();
    hide();
    drop(card_.data());
    card_ = nullptr;
}

void DialogHost::drop(DialogCard* card) {
    if (card == nullptr)
        return;
    card->hide();
    card->deleteLater(); // it may be the one that asked for this
}

void DialogHost::place() {
    if (!card_)
        return;
    constexpr double share = 0.15;
    const int margin = theme_.px(16);
    const int width = std::min(card_->preferredWidth(), this->width() - 2 * margin);
    const int height = std::min(card_->heightForWidth(width), this->height() - 2 * margin);
    const int top = std::min(qRound(this->height() * share), this->height() - margin - height);
    const int middle = beside_ ? beside_().center().x() + 1 : this->width() / 2;
    const int left = std::min(middle - width / 2, this->width() - margin - width);
    card_->setGeometry(std::max(left, margin), top, width, height);
}

bool DialogHost::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

void DialogHost::resizeEvent(QResizeEvent*) {
    place();
}

void DialogHost::mousePressEvent(QMouseEvent* event) {
    event->accept();
}

void DialogHost::wheelEvent(QWheelEvent* event) {
    event->accept();
}

void DialogHost::paintEvent(QPaintEvent*) {
    auto scrim = theme_.tokens().scrim;
    if (beside_)
        scrim.setAlphaF(theme_.appearance() == Appearance::light ? lightScrim : darkScrim);
    QPainter(this).fillRect(rect(), scrim);
}

} // namespace fennik::ui
