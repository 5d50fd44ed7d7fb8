#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QWidget>

#include <vector>

namespace fennik::ui {

/// One of several choices that stand side by side. It is a single stop of the Tab key, and the
/// arrows choose within it.
class SegmentedControl final : public QWidget {
    Q_OBJECT

public:
    enum class Availability { available, unavailable };
    struct Choice {
        QString title = {};
        QString detail = {}; ///< behind the title, may be empty
        Availability availability = Availability::available;
        QString icon = {}; ///< for `Icons::line`, before the title, may be empty
    };

    /// `name` is what screen readers call it. The first choice is chosen.
    SegmentedControl(const QString& name, const std::vector<Choice>& choices, const Theme& theme,
                     Icons& icons, QWidget* parent);

    int chosen() const;
    void choose(int index);

    /// With which nothing is cut off, in segments as wide as their words.
    int naturalWidth() const;
    QSize sizeHint() const override;

signals:
    void chosenChanged(int index);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    class Segment;

    const Theme& theme_;
    std::vector<Segment*> segments_;
};

} // namespace fennik::ui
