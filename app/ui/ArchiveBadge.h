#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QLabel>

namespace fennik::ui {

/// Says in the path bar what kind of archive is shown, and that nothing in it can be changed.
class ArchiveBadge final : public QLabel {
    Q_OBJECT

public:
    ArchiveBadge(const Theme& theme, Icons& icons, QWidget* parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QFont textFont() const { return theme_.font(FontRole::small, QFont::DemiBold); }

    const Theme& theme_;
    Icons& icons_;
};

} // namespace fennik::ui
