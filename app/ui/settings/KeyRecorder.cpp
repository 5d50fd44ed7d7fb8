#include "app/ui/settings/KeyRecorder.h"

#include "app/ui/AccessibleRole.h"
#include "app/ui/KeyPress.h"

#include <QFontMetrics>
#include <QKeyEvent>
#include <QPainter>

namespace fennik::ui {

namespace {

const QString prompt = QStringLiteral("Stiskněte zkratku…");
const QString wayOut = QStringLiteral("Esc zruší");
constexpr double padding = 10;
constexpr double iconSide = 16;
constexpr double gap = 8;
constexpr double radius = 6;

} // namespace

KeyRecorder::KeyRecorder(const UiContext& context, app::KeyboardLayout& layout, QWidget* parent)
    : QWidget(parent), context_(context), layout_(layout) {
    setObjectName(QStringLiteral("keyRecorder"));
    setAccessibleRole(*this, QAccessible::HotkeyField);
    setAccessibleName(prompt);
    setAccessibleDescription(wayOut);
    setFocusPolicy(Qt::ClickFocus);
    connect(&context_.theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QSize KeyRecorder::sizeHint() const {
    const auto& theme = context_.theme;
    const int words =
        QFontMetrics(theme.font(FontRole::detail, QFont::Medium)).horizontalAdvance(prompt) +
        QFontMetrics(theme.font(FontRole::small)).horizontalAdvance(wayOut);
    return {words + theme.px(2 * padding + iconSide + 2 * gap) + 2, theme.px(24)};
}

bool KeyRecorder::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
        take(*static_cast<QKeyEvent*>(event));
        [[fallthrough]];
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
        event->accept();
        return true;
    default:
        return QWidget::event(event);
    }
}

void KeyRecorder::take(const QKeyEvent& event) {
    // The key that has called for the recorder may still be held down.
    if (event.isAutoRepeat())
        return;
    const auto& store = context_.shortcuts;
    // What the press does now, or else by default: with Ctrl that may be a combination with
    // control.
    auto combo = KeyPress::combo(event, layout_, [&](const KeyCombo& candidate) {
        return store.actionFor(candidate).has_value();
    });
    if (combo && !store.actionFor(*combo))
        combo = KeyPress::combo(event, layout_, [&](const KeyCombo& candidate) {
            return store.defaults().owner(candidate).has_value();
        });
    if (!combo)
        return;
    if (*combo == KeyCombo::parse("escape"))
        emit cancelled();
    else
        emit pressed(*combo);
}

void KeyRecorder::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    if (event->reason() != Qt::ActiveWindowFocusReason)
        emit cancelled();
}

void KeyRecorder::paintEvent(QPaintEvent*) {
    const auto& theme = context_.theme;
    const auto& tokens = theme.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(tokens.accent, 2));
    painter.setBrush(tokens.field);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);
    const int side = theme.px(iconSide);
    int left = theme.px(padding);
    painter.drawPixmap(left, (height() - side) / 2,
                       context_.icons.line(QStringLiteral("keyboard"), side, tokens.accentText,
                                           devicePixelRatioF()));
    left += side + theme.px(gap);
    painter.setFont(theme.font(FontRole::detail, QFont::Medium));
    painter.setPen(tokens.accentText);
    const auto room = rect().adjusted(left, 0, -theme.px(padding), 0);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, prompt);
    painter.setFont(theme.font(FontRole::small));
    painter.setPen(tokens.text3);
    painter.drawText(room, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, wayOut);
}

} // namespace fennik::ui
