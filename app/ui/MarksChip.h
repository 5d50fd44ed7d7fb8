#pragma once

#include "app/ui/Theme.h"

#include <QLabel>

namespace fennik::ui {

/// What is marked, as an amber chip with a tick. Hidden while it has no text.
class MarksChip final : public QLabel {
    Q_OBJECT

public:
    MarksChip(const Theme& theme, QWidget* parent);

    /// Screen readers say the text when it is another one.
    void show(const QString& text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QFont textFont() const { return theme_.font(FontRole::detail, QFont::DemiBold); }

    const Theme& theme_;
};

} // namespace fennik::ui
