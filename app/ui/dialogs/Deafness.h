#pragma once

#include <QObject>
#include <QTimer>

class QWidget;

namespace fennik::ui {

/// Keeps keys from a dialog for a moment after it has come up by itself: who is typing something
/// else must not answer it.
class Deafness final : public QObject {
    Q_OBJECT

public:
    /// Belongs to `card`, and begins when that is shown.
    explicit Deafness(QWidget& card);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& card_;
    QTimer ends_;
};

} // namespace fennik::ui
