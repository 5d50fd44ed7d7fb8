#pragma once

#include <QProxyStyle>

namespace fennik::ui {

/// The style of the whole application: Fusion, in which nothing moves on its own where that is
/// asked for.
class WindowStyle final : public QProxyStyle {
    Q_OBJECT

public:
    WindowStyle();

    void setReducedMotion(bool isReduced) { isMotionReduced_ = isReduced; }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option,
                       const QWidget* widget) const override;

private:
    bool isMotionReduced_ = false;
};

} // namespace fennik::ui
