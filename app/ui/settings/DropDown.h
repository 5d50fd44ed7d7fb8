#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QComboBox>

namespace fennik::ui {

/// A choice of one text from a list that drops down.
class DropDown final : public QComboBox {
    Q_OBJECT

public:
    /// `name` is what screen readers call it.
    DropDown(const QString& name, const Theme& theme, Icons& icons, QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    const Theme& theme_;
    Icons& icons_;
};

} // namespace fennik::ui
