#pragma once

#include "app/ui/JobTexts.h"
#include "app/ui/Theme.h"

#include <QAbstractButton>

namespace fennik::ui {

/// The queue of jobs in a few words, with a ring that closes as a job goes on.
class QueuePill final : public QAbstractButton {
    Q_OBJECT

public:
    QueuePill(const Theme& theme, QWidget* parent);

    void setBrief(const JobTexts::Brief& brief);

    /// Figures that get shorter leave it as wide as it was.
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Colors;
    Colors colors() const;
    QFont textFont() const { return theme_.font(FontRole::detail, QFont::DemiBold); }

    const Theme& theme_;
    JobTexts::Brief brief_;
    double textWidth_ = 0;
};

} // namespace fennik::ui
