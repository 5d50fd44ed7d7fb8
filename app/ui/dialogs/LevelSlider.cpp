#include "app/ui/dialogs/LevelSlider.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace fennik::ui {

LevelSlider::LevelSlider(const QString& name, int least, int most, const Theme& theme,
                         QWidget* parent)
    : QAbstractSlider(parent), theme_(theme) {
    setAccessibleName(name);
    setOrientation(Qt::Horizontal);
    setRange(least, most);
    setSingleStep(1);
    setPageStep(3);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QSize LevelSlider::sizeHint() const {
    return {theme_.px(200), theme_.px(24)};
}

double LevelSlider::knobRadius() const {
    return theme_.px(16) / 2.0;
}

double LevelSlider::positionOf(int level) const {
    const double room = width() - 2 * knobRadius();
    return knobRadius() + room * (level - minimum()) / (maximum() - minimum());
}

int LevelSlider::levelAt(double x) const {
    const double room = std::max(1.0, width() - 2 * knobRadius());
    return minimum() + qRound((x - knobRadius()) / room * (maximum() - minimum()));
}

void LevelSlider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    setSliderDown(true);
    setSliderPosition(levelAt(event->position().x()));
}

void LevelSlider::mouseMoveEvent(QMouseEvent* event) {
    if (isSliderDown())
        setSliderPosition(levelAt(event->position().x()));
}

void LevelSlider::mouseReleaseEvent(QMouseEvent*) {
    setSliderDown(false);
}

void LevelSlider::wheelEvent(QWheelEvent* event) {
    event->ignore(); // it scrolls what this stands in
}

void LevelSlider::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double thickness = theme_.px(4);
    const double middle = height() / 2.0;
    const double knob = positionOf(value());
    const QRectF track(knobRadius(), middle - thickness / 2, width() - 2 * knobRadius(), thickness);
    const auto fill = [&](const QRectF& area, const QColor& color) {
        painter.setBrush(color);
        painter.drawRoundedRect(area, thickness / 2, thickness / 2);
    };
    fill(track, tokens.pressed);
    fill(QRectF(track.left(), track.top(), knob - track.left(), thickness), tokens.progress);
    painter.setBrush(tokens.control);
    for (int level = value() + 1; level <= maximum(); ++level)
        painter.drawEllipse(QPointF(positionOf(level), middle), 1.5, 1.5);

    const double line = hasFocus() ? 2 : 1;
    const double radius = knobRadius() - line / 2;
    painter.setPen(QPen(hasFocus() ? tokens.accent : tokens.control, line));
    painter.setBrush(underMouse() || isSliderDown() ? tokens.onAccent2 : tokens.onAccent);
    painter.drawEllipse(QPointF(knob, middle), radius, radius);
}

} // namespace fennik::ui
