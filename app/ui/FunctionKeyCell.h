#pragma once

#include "app/ui/FunctionKeyBar.h"

#include <QAbstractButton>

namespace fennik::ui {

/// One key of a `FunctionKeyBar`.
class FunctionKeyCell final : public QAbstractButton {
    Q_OBJECT

public:
    FunctionKeyCell(const Theme& theme, Icons& icons, QWidget* parent);

    void setCell(const FunctionKeyBar::Cell& cell);
    enum class Room {
        full,
        titleOnly, ///< no icon
        iconOnly,  ///< no title, of which only the first letters would be left
    };
    void setRoom(Room room);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme_;
    Icons& icons_;
    FunctionKeyBar::Cell cell_;
    Room room_ = Room::full;
};

} // namespace fennik::ui
