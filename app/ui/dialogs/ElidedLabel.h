#pragma once

#include <QLabel>

namespace fennik::ui {

/// A label of one line that cuts out of the middle what has no room, and then has the whole text as
/// its tooltip. Names of files are no markup in it.
class ElidedLabel final : public QLabel {
    Q_OBJECT

public:
    ElidedLabel(const QString& text, QWidget* parent);

    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString shown() const;
};

} // namespace fennik::ui
