#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QAbstractButton>

namespace fennik::ui {

/// A flat button with a line icon. Its title is its name for screen readers, and with the key's
/// legend its tooltip.
class IconButton final : public QAbstractButton {
    Q_OBJECT

public:
    /// Filled with the colour of the chosen, as the star of a favourite is.
    void setFilled(bool isFilled);

    IconButton(QString icon, const QString& title, const QString& key, const Theme& theme,
               Icons& icons, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString icon_;
    const Theme& theme_;
    Icons& icons_;
    bool isFilled_ = false;
};

} // namespace fennik::ui
