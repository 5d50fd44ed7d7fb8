#pragma once

#include "app/ui/Theme.h"

#include <QWidget>

namespace fennik::ui {

class CardShadow;

/// A card that floats over the window with a shadow around it and a line of hints at its foot. A
/// part of the window itself, so that the keyboard can stay where it is. Hidden at first; the
/// shadow shows, moves and goes with it, and lets clicks through.
class PopupCard : public QWidget {
    Q_OBJECT

public:
    PopupCard(const Theme& theme, QString foot, QWidget* parent);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

    const Theme& theme() const { return theme_; }
    /// The room that the hints take at the bottom.
    int footHeight() const { return theme_.px(33); }
    /// With which the hints are not cut off.
    int footWidth() const;

private:
    void followWithShadow();
    QFont footFont() const;

    const Theme& theme_;
    QString foot_;
    CardShadow* shadow_; ///< stands under the card, with the same parent
};

} // namespace fennik::ui
