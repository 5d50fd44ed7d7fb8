#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QAbstractButton>

namespace fennik::ui {

/// Says that some combinations have more than one action; a click leads to the first of them.
class CollisionStrip final : public QAbstractButton {
    Q_OBJECT

public:
    CollisionStrip(const Theme& theme, Icons& icons, QWidget* parent);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRect textRect(int width) const;

    const Theme& theme_;
    Icons& icons_;
};

} // namespace fennik::ui
