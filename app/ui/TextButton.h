#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QAbstractButton>

namespace fennik::ui {

/// A button that is nothing but its text, in the colour of links unless it has an icon.
class TextButton final : public QAbstractButton {
    Q_OBJECT

public:
    TextButton(const QString& text, const Theme& theme, QWidget* parent);

    /// A line icon before the text, both in the colour of labels.
    void setLineIcon(const QString& name, Icons& icons);
    /// Where it is not shown, the text is the tooltip of the icon.
    void setTextShown(bool isShown);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int iconRoom() const;

    const Theme& theme_;
    QString icon_;
    bool isTextShown_ = true;
    Icons* icons_ = nullptr; ///< while there is an icon
};

} // namespace fennik::ui
