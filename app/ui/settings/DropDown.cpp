#include "app/ui/settings/DropDown.h"

#include <QListView>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>

namespace fennik::ui {

namespace {

constexpr double fieldHeight = 32;
constexpr double padding = 11;
constexpr double chevronSide = 16;
constexpr double radius = 7;

} // namespace

DropDown::DropDown(const QString& name, const Theme& theme, Icons& icons, QWidget* parent)
    : QComboBox(parent), theme_(theme), icons_(icons) {
    setAccessibleName(name);
    setFont(theme.font(FontRole::body));
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto* list = new QListView(this);
    list->setAccessibleName(name);
    setView(list); // the toolkit's own one draws its rows as the platform does
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QSize DropDown::sizeHint() const {
    int widest = 0;
    for (int index = 0; index < count(); ++index)
        widest = std::max(widest, fontMetrics().horizontalAdvance(itemText(index)));
    return {widest + theme_.px(2 * padding + 10 + chevronSide), theme_.px(fieldHeight)};
}

void DropDown::wheelEvent(QWheelEvent* event) {
    event->ignore(); // who scrolls the page must not change what comes under the mouse
}

void DropDown::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double line = hasFocus() ? 2 : 1;
    painter.setPen(QPen(hasFocus() ? tokens.accent : tokens.control, line));
    painter.setBrush(underMouse() ? tokens.hover : tokens.field);
    painter.drawRoundedRect(QRectF(rect()).adjusted(line / 2, line / 2, -line / 2, -line / 2),
                            radius, radius);
    const int side = theme_.px(chevronSide);
    const int edge = theme_.px(padding);
    painter.drawPixmap(
        width() - edge - side, (height() - side) / 2,
        icons_.line(QStringLiteral("chevron-down"), side, tokens.text2, devicePixelRatioF()));
    painter.setFont(font());
    painter.setPen(tokens.text);
    painter.drawText(rect().adjusted(edge, 0, -edge - side, 0),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, currentText());
}

} // namespace fennik::ui
