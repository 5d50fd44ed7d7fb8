#pragma once

#include "app/ui/dialogs/DialogCard.h"
#include "app/ui/dialogs/SourceList.h"

class QCheckBox;

namespace fennik::ui {

/// Asks whether items are to go to the trash.
class TrashDialog final : public DialogCard {
    Q_OBJECT

public:
    /// `hint` says how to get them back.
    TrashDialog(const SourceItems& items, const QString& subtitle, const QString& hint,
                const Theme& theme, Icons& icons, QWidget* parent);

    /// Whether the user wants to be asked the next time too.
    bool asksNextTime() const;

private:
    QCheckBox* noMore_;
};

} // namespace fennik::ui
