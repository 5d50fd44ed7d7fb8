#pragma once

#include <QProxyStyle>

namespace fennik::ui {

/// The style of the whole application: Fusion with narrow scroll bars, in which nothing moves on
/// its own where that is asked for.
class WindowStyle final : public QProxyStyle {
    Q_OBJECT

public:
    WindowStyle();

    void setReducedMotion(bool isReduced) { isMotionReduced_ = isReduced; }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override;
    /// A scroll bar is all groove, with a handle in it.
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                         SubControl subControl, const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override;
    using QProxyStyle::polish;
    void polish(QWidget* widget) override;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option,
                       const QWidget* widget) const override;

private:
    bool isMotionReduced_ = false;
};

} // namespace fennik::ui
