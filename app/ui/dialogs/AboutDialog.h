#pragma once

#include "app/ui/dialogs/DialogCard.h"

namespace fennik::ui {

class KeyButton;

/// What the program is, which version of it this is, and what it is made of.
class AboutDialog final : public DialogCard {
    Q_OBJECT

public:
    AboutDialog(const Theme& theme, Icons& icons, QWidget* parent);

signals:
    void licensesRequested();

private:
    /// Puts what a report of a fault should say into the clipboard.
    void copyFacts();

    KeyButton* copy_;
};

} // namespace fennik::ui
