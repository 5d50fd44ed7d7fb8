#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QAbstractButton>

#include <cstddef>

namespace fennik::ui {

/// The number of errors, which unfolds them.
class UnfoldButton final : public QAbstractButton {
    Q_OBJECT

public:
    UnfoldButton(const Theme& theme, Icons& icons, QWidget* parent);

    void setCount(std::size_t count);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QFont font() const { return theme_.font(FontRole::detail, QFont::DemiBold); }

    const Theme& theme_;
    Icons& icons_;
};

} // namespace fennik::ui
