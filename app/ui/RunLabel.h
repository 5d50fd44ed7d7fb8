#pragma once

#include "app/ui/Theme.h"

#include <QLabel>

#include <vector>

namespace fennik::ui {

/// A label of one line whose parts differ in colour and weight, with digits of equal width. Too
/// little room cuts it off at the end.
class RunLabel final : public QLabel {
    Q_OBJECT

public:
    struct Run {
        QString text;
        QColor color;
        QFont::Weight weight = QFont::Normal;
    };

    RunLabel(const Theme& theme, Qt::Alignment alignment, QWidget* parent);

    void setRuns(std::vector<Run> runs);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double width(const Run& run) const;
    double contentWidth() const;

    const Theme& theme_;
    std::vector<Run> runs_;
};

} // namespace fennik::ui
