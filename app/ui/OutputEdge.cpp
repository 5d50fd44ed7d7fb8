#include "app/ui/OutputEdge.h"

#include "app/ui/AccessibleRole.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace fennik::ui {

namespace {

constexpr double step = 24; ///< of an arrow key

} // namespace

OutputEdge::OutputEdge(const Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
    setAccessibleRole(*this, QAccessible::Splitter);
    setObjectName(QStringLiteral("outputEdge"));
    setAccessibleName(QStringLiteral("Výška výstupu"));
    setCursor(Qt::SplitVCursor);
    setFocusPolicy(Qt::TabFocus);
}

void OutputEdge::paintEvent(QPaintEvent*) {
    if (hasFocus())
        QPainter(this).fillRect(0, height() / 2 - 1, width(), 2, theme_.tokens().accent);
}

void OutputEdge::mousePressEvent(QMouseEvent* event) {
    grabbedAt_ = event->pos().y();
}

void OutputEdge::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons().testFlag(Qt::LeftButton))
        emit moved(grabbedAt_ - event->pos().y());
}

void OutputEdge::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Up)
        emit moved(theme_.px(step));
    else if (event->key() == Qt::Key_Down)
        emit moved(-theme_.px(step));
    else
        QWidget::keyPressEvent(event);
}

} // namespace fennik::ui
