#pragma once

#include "app/ui/dialogs/DialogCard.h"

namespace fennik::ui {

/// Asks whether the jobs that have not ended are to be cancelled, because the window is to close.
class QuitDialog final : public DialogCard {
    Q_OBJECT

public:
    /// `summary` tells what the jobs are at.
    QuitDialog(const QString& summary, const Theme& theme, Icons& icons, QWidget* parent);
};

} // namespace fennik::ui
