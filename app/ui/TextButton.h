#pragma once

#include "app/ui/Theme.h"

#include <QAbstractButton>

namespace fennik::ui {

/// A button that is nothing but its text, in the colour of links.
class TextButton final : public QAbstractButton {
    Q_OBJECT

public:
    TextButton(const QString& text, const Theme& theme, QWidget* parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme_;
};

} // namespace fennik::ui
