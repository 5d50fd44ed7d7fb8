#pragma once

#include "app/ui/Theme.h"

#include <QAbstractButton>

namespace fennik::ui {

/// One folder of the path bar: a flat button with a text, cut off where it has too little room.
class Crumb final : public QAbstractButton {
    Q_OBJECT

public:
    Crumb(const QString& title, const Theme& theme, QWidget* parent);

    const QString& title() const { return title_; }
    /// Whether something would be dropped into its folder.
    void setDropTarget(bool isTarget);
    void setEmphasis(QFont::Weight weight);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString title_;
    const Theme& theme_;
    QFont::Weight weight_ = QFont::Normal;
    bool isDropTarget_ = false;
};

} // namespace fennik::ui
