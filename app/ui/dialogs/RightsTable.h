#pragma once

#include "app/ui/Theme.h"

#include <QWidget>

#include <cstdint>

namespace fennik::ui {

/// Who may do what with an item: three rows of three ticks.
class RightsTable final : public QWidget {
    Q_OBJECT

public:
    RightsTable(const Theme& theme, QWidget* parent);

    /// The low bits of a mode.
    void setMode(std::uint16_t mode);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool has(int row, int column) const;
    QString spoken() const;

    const Theme& theme_;
    std::uint16_t mode_ = 0;
};

} // namespace fennik::ui
