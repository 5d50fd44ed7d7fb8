#pragma once

#include "app/ui/Theme.h"

#include <QAbstractButton>

namespace fennik::ui {

/// A text that fills a field when it is clicked, in the font for masks. It leaves the keyboard in
/// that field.
class Chip final : public QAbstractButton {
    Q_OBJECT

public:
    Chip(const QString& text, const Theme& theme, QWidget* parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString value_;
    const Theme& theme_;
};

} // namespace fennik::ui
