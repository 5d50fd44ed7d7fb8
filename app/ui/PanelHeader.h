#pragma once

#include "app/ui/PanelTableModel.h"
#include "app/ui/Theme.h"

#include <QHeaderView>

namespace fennik::ui {

/// The column titles of a panel, with a chevron at the sorted one. A click sorts; a right click
/// offers all sort keys.
class PanelHeader final : public QHeaderView {
    Q_OBJECT

public:
    PanelHeader(app::PanelModel& panel, const Theme& theme, QWidget* parent);

    /// The part of the header's height that is already the ground of the rows.
    int gapBelow() const;
    void setGround(const QColor& rows);

    QSize sizeHint() const override;

signals:
    /// A menu of this header has opened, or closed again.
    void menuOpened(bool isOpen);

protected:
    void paintEvent(QPaintEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void paintColumn(QPainter& painter, PanelColumn column) const;

    app::PanelModel& panel_;
    const Theme& theme_;
    QColor rowGround_;
};

} // namespace fennik::ui
