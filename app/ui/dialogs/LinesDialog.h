#pragma once

#include "app/ui/dialogs/DialogCard.h"

namespace fennik::ui {

/// A message of several lines, all of them to be read and copied.
class LinesDialog final : public DialogCard {
    Q_OBJECT

public:
    LinesDialog(const QString& text, const Theme& theme, Icons& icons, QWidget* parent);
};

} // namespace fennik::ui
