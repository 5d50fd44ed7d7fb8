#pragma once

#include "app/ui/Theme.h"

#include <QCheckBox>

namespace fennik::ui {

/// A check box in the colours of the theme.
class CheckBox final : public QCheckBox {
    Q_OBJECT

public:
    CheckBox(const QString& title, const Theme& theme, QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool hitButton(const QPoint& point) const override { return rect().contains(point); }
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme_;
};

} // namespace fennik::ui
