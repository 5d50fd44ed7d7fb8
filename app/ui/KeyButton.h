#pragma once

#include "app/ui/Theme.h"

#include <QAbstractButton>

namespace fennik::ui {

/// A button that shows its key beside its title.
class KeyButton final : public QAbstractButton {
    Q_OBJECT

public:
    KeyButton(const QString& title, const QString& key, const Theme& theme, QWidget* parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double titleWidth() const;
    double keyWidth() const;

    QString key_;
    const Theme& theme_;
};

} // namespace fennik::ui
