#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QWidget>

class QLabel;

namespace fennik::ui {

/// Says below a field what is wrong with it. Floats over what lies there; hidden at first.
class ErrorStrip final : public QWidget {
    Q_OBJECT

public:
    ErrorStrip(const Theme& theme, Icons& icons, QWidget* parent);

    /// `field` is in the parent's coordinates. The strip goes above it where there is no room.
    void showBelow(const QRect& field, const QString& message);
    const QString& message() const { return message_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void takeTheme();

    const Theme& theme_;
    Icons& icons_;
    QLabel* text_;
    QString message_;
};

} // namespace fennik::ui
