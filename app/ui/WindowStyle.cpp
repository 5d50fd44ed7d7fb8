#include "app/ui/WindowStyle.h"

#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionSlider>

#include <algorithm>

namespace fennik::ui {

namespace {

constexpr int scrollBarWidth = 10;
constexpr int leastHandle = 32;
constexpr int handleMargin = 2;
constexpr double handleRadius = 3;

QRect scrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part) {
    const auto& whole = bar.rect;
    const bool isUpright = bar.orientation == Qt::Vertical;
    const int length = isUpright ? whole.height() : whole.width();
    const auto stretch = [&](int from, int to) {
        const QRect found = isUpright ? QRect(0, from, whole.width(), to - from)
                                      : QRect(from, 0, to - from, whole.height());
        return QStyle::visualRect(bar.direction, whole, found.translated(whole.topLeft()));
    };
    // The steps of a long list together may be more than an int holds.
    const qint64 hidden = qint64(bar.maximum) - bar.minimum;
    const qint64 share = hidden > 0 ? length * qint64(bar.pageStep) / (hidden + bar.pageStep) : 0;
    const int handle =
        hidden > 0 ? std::min(length, std::max(leastHandle, static_cast<int>(share))) : length;
    const int from = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                     length - handle, bar.upsideDown);
    switch (part) {
    case QStyle::SC_ScrollBarGroove:
        return whole;
    case QStyle::SC_ScrollBarSlider:
        return stretch(from, from + handle);
    case QStyle::SC_ScrollBarSubPage:
        return stretch(0, from);
    case QStyle::SC_ScrollBarAddPage:
        return stretch(from + handle, length);
    default: // there are no arrows
        return {};
    }
}

} // namespace

WindowStyle::WindowStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

int WindowStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                           QStyleHintReturn* result) const {
    const bool isStill = hint == SH_Widget_Animation_Duration && isMotionReduced_;
    const bool isMenuOfScrollBar = hint == SH_ScrollBar_ContextMenu; // nobody needs one
    return isStill || isMenuOfScrollBar ? 0 : QProxyStyle::styleHint(hint, option, widget, result);
}

int WindowStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                             const QWidget* widget) const {
    switch (metric) {
    case PM_ScrollBarExtent:
        return scrollBarWidth;
    case PM_ScrollBarSliderMin:
        return leastHandle;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

QRect WindowStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                  SubControl subControl, const QWidget* widget) const {
    const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    return control == CC_ScrollBar && bar != nullptr
               ? scrollBarPart(*bar, subControl)
               : QProxyStyle::subControlRect(control, option, subControl, widget);
}

void WindowStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                     QPainter* painter, const QWidget* widget) const {
    const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_ScrollBar || bar == nullptr) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(bar->palette.mid());
    painter->drawRoundedRect(
        scrollBarPart(*bar, SC_ScrollBarSlider)
            .marginsRemoved({handleMargin, handleMargin, handleMargin, handleMargin}),
        handleRadius, handleRadius);
    painter->restore();
}

void WindowStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (qobject_cast<QScrollBar*>(widget) != nullptr) // what lies below shows beside the handle
        widget->setAttribute(Qt::WA_OpaquePaintEvent, false);
}

QIcon WindowStyle::standardIcon(StandardPixmap icon, const QStyleOption* option,
                                const QWidget* widget) const {
    // A menu bar asks for it when it is made, and its being a picture in a file would have the
    // toolkit load a library for each kind of picture there is. `MenuBar` has an icon of ours.
    return icon == SP_ToolBarHorizontalExtensionButton
               ? QIcon()
               : QProxyStyle::standardIcon(icon, option, widget);
}

} // namespace fennik::ui
