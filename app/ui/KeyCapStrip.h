#pragma once

#include "app/ui/Theme.h"

#include <QStringList>
#include <QWidget>

namespace fennik::ui {

/// Legends of keys in a row, each drawn as the cap of a key. Without any it says that there is no
/// shortcut.
class KeyCapStrip final : public QWidget {
    Q_OBJECT

public:
    KeyCapStrip(QStringList legends, const Theme& theme, QWidget* parent);

    QSize sizeHint() const override;
    /// The legends as they are read aloud.
    QString spoken() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double capWidth(const QString& legend) const;

    QStringList legends_;
    const Theme& theme_;
};

} // namespace fennik::ui
