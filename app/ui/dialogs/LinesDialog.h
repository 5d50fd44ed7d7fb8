#pragma once

#include "app/ui/dialogs/DialogCard.h"

namespace fennik::ui {

/// A text of several lines, all of them to be read and copied.
class LinesDialog final : public DialogCard {
    Q_OBJECT

public:
    /// A message, of which the toast has shown the first line.
    LinesDialog(const QString& text, const Theme& theme, Icons& icons, QWidget* parent);
    /// A text with a title of its own.
    LinesDialog(const QString& title, const QString& subtitle, const QString& text,
                const Theme& theme, Icons& icons, QWidget* parent);
};

} // namespace fennik::ui
