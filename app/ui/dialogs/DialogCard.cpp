#include "app/ui/dialogs/DialogCard.h"

#include "app/ui/AccessibleRole.h"
#include "app/ui/KeyButton.h"
#include "app/ui/KeyCaps.h"
#include "app/ui/StyleSheet.h"
#include "app/ui/dialogs/ElidedLabel.h"
#include "app/ui/dialogs/LabelColor.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>

#include <algorithm>

namespace fennik::ui {

namespace {

constexpr double gap = 16;
constexpr double footerMargin = 12;
constexpr double buttonHeight = 32;
constexpr double radius = 12;
constexpr double hintIconRoom = 22;

} // namespace

DialogCard::DialogCard(const Texts& texts, const Theme& theme, Icons& icons, QWidget* parent)
    : QWidget(parent),
      theme_(theme),
      icons_(icons),
      frame_(texts.frame),
      icon_(texts.icon),
      tone_(texts.tone),
      hintIcon_(texts.hintIcon),
      title_(new ElidedLabel({}, this)),
      subtitle_(new ElidedLabel({}, this)),
      area_(new QScrollArea(this)),
      hint_(new ElidedLabel(texts.hint, this)),
      other_(new KeyButton(texts.other, {}, theme, this)),
      cancel_(new KeyButton(texts.cancel, KeyCaps::escape, theme, this)),
      confirm_(new KeyButton(texts.confirm, KeyCaps::enter, theme, this)),
      look_(texts.look) {
    setObjectName(QStringLiteral("dialogCard"));
    setAccessibleRole(*this, QAccessible::Dialog);
    setTitle(texts.title);
    setSubtitle(texts.subtitle);
    title_->setObjectName(QStringLiteral("dialogTitle"));
    subtitle_->setObjectName(QStringLiteral("dialogSubtitle"));
    hint_->setObjectName(QStringLiteral("dialogHint"));
    const bool isPortrait = frame_ == Frame::portrait;
    title_->setFont(theme.font(isPortrait ? FontRole::headline : FontRole::title, QFont::DemiBold));
    subtitle_->setFont(theme.font(isPortrait ? FontRole::body : FontRole::detail));
    for (auto* label : {title_, subtitle_})
        label->setHidden(frame_ == Frame::bare);
    hint_->setFont(theme.font(FontRole::detail));
    hint_->setHidden(texts.hint.isEmpty());
    followColor(*title_, theme, &Tokens::text);
    for (auto* label : {subtitle_, hint_})
        followColor(*label, theme, &Tokens::text2);

    area_->setObjectName(QStringLiteral("dialogArea"));
    area_->setFrameShape(QFrame::NoFrame);
    area_->setFocusPolicy(Qt::NoFocus);
    area_->setWidgetResizable(true);
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area_->viewport()->setAutoFillBackground(false);

    cancel_->setObjectName(QStringLiteral("dialogCancel"));
    confirm_->setObjectName(QStringLiteral("dialogConfirm"));
    area_->verticalScrollBar()->setAccessibleName(QStringLiteral("Posuvník dialogu"));
    confirm_->setLook(KeyButtonLook::primary);
    other_->setObjectName(QStringLiteral("dialogOther"));
    for (auto* button : {other_, cancel_, confirm_}) {
        button->setFocusPolicy(Qt::StrongFocus);
        button->setHidden(button->text().isEmpty());
    }
    connect(other_, &QAbstractButton::clicked, this, &DialogCard::otherRequested);
    connect(cancel_, &QAbstractButton::clicked, this, &DialogCard::cancelled);
    connect(confirm_, &QAbstractButton::clicked, this, &DialogCard::confirmed);
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* anywhere = new QShortcut(QKeySequence(Qt::CTRL | key), this);
        anywhere->setContext(Qt::WidgetWithChildrenShortcut);
        connect(anywhere, &QShortcut::activated, this, &DialogCard::confirm);
    }
    wear(*this, theme_, StyleSheet::all);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void DialogCard::setTitle(const QString& title) {
    title_->setText(title);
    setAccessibleName(title);
}

void DialogCard::setSubtitle(const QString& subtitle) {
    subtitle_->setText(subtitle);
    setAccessibleDescription(subtitle);
}

void DialogCard::setContent(QWidget* content) {
    content_ = content;
    content->installEventFilter(this);
    area_->setWidget(content);
    content->setAutoFillBackground(false); // which the scroll area has set
}

void DialogCard::setConfirmable(bool isConfirmable) {
    confirm_->setEnabled(isConfirmable);
}

void DialogCard::setPreferredWidth(int width) {
    preferredWidth_ = width;
    emit heightChanged();
}

int DialogCard::preferredWidth() const {
    return theme_.px(preferredWidth_);
}

int DialogCard::margin() const {
    if (frame_ == Frame::bare)
        return 1; // the outline
    return theme_.px(frame_ == Frame::portrait ? 24 : 20);
}

int DialogCard::tileSide() const {
    return theme_.px(frame_ == Frame::portrait ? 60 : 36);
}

int DialogCard::headerHeight() const {
    return frame_ == Frame::bare ? 1 : margin() + tileSide() + theme_.px(gap);
}

int DialogCard::footerHeight() const {
    if (frame_ == Frame::bare)
        return 1;
    return theme_.px(buttonHeight + 2 * footerMargin) + 1;
}

int DialogCard::gapBelow() const {
    return frame_ == Frame::bare ? 0 : theme_.px(gap);
}

int DialogCard::heightForWidth(int width) const {
    int content = 0;
    if (content_ != nullptr) {
        const int room = width - 2 * margin();
        const int wanted = content_->heightForWidth(room);
        content = (wanted < 0 ? content_->sizeHint().height() : wanted) + gapBelow();
    }
    return headerHeight() + content + footerHeight();
}

std::vector<QWidget*> DialogCard::focusOrder() const {
    std::vector<QWidget*> order;
    for (auto* widget = nextInFocusChain(); widget != this; widget = widget->nextInFocusChain()) {
        const bool takesTab = (widget->focusPolicy() & Qt::TabFocus) != 0;
        if (takesTab && isAncestorOf(widget) && widget->isVisibleTo(this) && widget->isEnabled())
            order.push_back(widget);
    }
    // The content was put in after the buttons, and is read before them.
    std::ranges::stable_partition(
        order, [this](const QWidget* widget) { return widget->parentWidget() != this; });
    return order;
}

void DialogCard::takeFocus() {
    const auto order = focusOrder();
    if (order.empty())
        return;
    const auto field = std::ranges::find_if(
        order, [](QWidget* widget) { return qobject_cast<QLineEdit*>(widget) != nullptr; });
    // Without a field the answer that Enter gives stands ready.
    auto* answer = canConfirm() ? static_cast<QWidget*>(confirm_) : order.front();
    auto* first = field != order.end() ? *field : answer;
    focus(*first, Qt::TabFocusReason);
    if (auto* line = qobject_cast<QLineEdit*>(first))
        line->selectAll();
}

bool DialogCard::focusNextPrevChild(bool next) {
    const auto order = focusOrder();
    if (order.empty())
        return true; // nowhere to go, and still not out of the card
    const auto current = std::ranges::find(order, QApplication::focusWidget());
    const auto count = std::ptrdiff_t(order.size());
    const auto index = current == order.end() ? (next ? -1 : 0) : current - order.begin();
    const auto target = (index + (next ? 1 : count - 1)) % count;
    focus(*order[std::size_t(target)], next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void DialogCard::focus(QWidget& widget, Qt::FocusReason reason) {
    widget.setFocus(reason);
    if (area_->isAncestorOf(&widget)) // the area itself only hears of steps within it
        area_->ensureWidgetVisible(&widget);
}

bool DialogCard::canConfirm() const {
    return confirm_->isEnabled() && !confirm_->isHidden();
}

void DialogCard::confirm() {
    if (canConfirm())
        emit confirmed();
}

void DialogCard::keyPressEvent(QKeyEvent* event) {
    const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
    if (modifiers == Qt::NoModifier && event->key() == Qt::Key_Escape) {
        emit cancelled();
    } else if (modifiers == Qt::NoModifier &&
               (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        auto* button = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
        if (button != nullptr && !button->isCheckable())
            button->click();
        else
            confirm();
    }
    event->accept(); // no key of a dialog does anything behind it
}

void DialogCard::mousePressEvent(QMouseEvent* event) {
    event->accept();
}

bool DialogCard::eventFilter(QObject* watched, QEvent* event) {
    if (watched == content_ && event->type() == QEvent::LayoutRequest)
        emit heightChanged();
    return QWidget::eventFilter(watched, event);
}

void DialogCard::resizeEvent(QResizeEvent*) {
    const int side = margin();
    const bool isPortrait = frame_ == Frame::portrait;
    const int textLeft = side + tileSide() + theme_.px(isPortrait ? 20 : 12);
    const int textWidth = width() - textLeft - side;
    title_->setGeometry(textLeft, theme_.px(isPortrait ? 31 : 18), textWidth,
                        theme_.px(isPortrait ? 26 : 20));
    subtitle_->setGeometry(textLeft, theme_.px(isPortrait ? 59 : 39), textWidth, theme_.px(17));
    // What scrolls keeps its width: the bar stands in the margin.
    const bool scrolls = frame_ != Frame::bare && height() < heightForWidth(width());
    const int bar = scrolls ? area_->verticalScrollBar()->sizeHint().width() : 0;
    area_->setGeometry(side, headerHeight(), width() - 2 * side + bar,
                       std::max(0, height() - headerHeight() - footerHeight() - gapBelow()));
    const int top = height() - footerHeight() + 1 + theme_.px(footerMargin);
    int right = width() - side;
    for (auto* button : {confirm_, cancel_, other_}) {
        if (button->isHidden())
            continue;
        const auto size = button->sizeHint();
        button->setGeometry(right - size.width(), top, size.width(), size.height());
        right -= size.width() + theme_.px(8);
    }
    const int hintLeft = side + (hintIcon_.isEmpty() ? 0 : theme_.px(hintIconRoom));
    hint_->setGeometry(hintLeft, top, std::max(0, right - hintLeft), theme_.px(buttonHeight));
}

void DialogCard::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto shape = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath outline;
    outline.addRoundedRect(shape, radius, radius);
    painter.fillPath(outline, tokens.raised);
    if (frame_ == Frame::bare) {
        painter.strokePath(outline, tokens.line);
        return;
    }
    const int footerTop = height() - footerHeight();
    painter.setClipRect(0, footerTop, width(), footerHeight());
    painter.fillPath(outline, tokens.chrome);
    painter.fillRect(0, footerTop, width(), 1, tokens.line);
    painter.setClipping(false);
    painter.strokePath(outline, tokens.line);
    paintTile(painter);
    if (hintIcon_.isEmpty())
        return;
    const int hintSide = theme_.px(16);
    painter.drawPixmap(margin(), hint_->geometry().center().y() - hintSide / 2 + 1,
                       icons_.line(hintIcon_, hintSide, tokens.text2, devicePixelRatioF()));
}

void DialogCard::paintTile(QPainter& painter) const {
    const auto& tokens = theme_.tokens();
    const double ratio = devicePixelRatioF();
    const QRect tile(margin(), margin(), tileSide(), tileSide());
    if (look_) {
        painter.drawPixmap(tile.topLeft(), icons_.file(*look_, IconBadge::none, IconGround::panel,
                                                       tile.width(), ratio));
        return;
    }
    if (frame_ == Frame::portrait) {
        painter.drawPixmap(tile.topLeft(), icons_.program(tile.width(), ratio));
        return;
    }
    const bool isPlain = tone_ == Tone::plain;
    painter.setPen(Qt::NoPen);
    painter.setBrush(isPlain ? tokens.accentSoft : tokens.warnSoft);
    painter.drawRoundedRect(tile, 8, 8);
    const int side = theme_.px(20);
    painter.drawPixmap(tile.left() + (tile.width() - side) / 2,
                       tile.top() + (tile.height() - side) / 2,
                       icons_.line(icon_, side, isPlain ? tokens.accentText : tokens.warn, ratio));
}

} // namespace fennik::ui
