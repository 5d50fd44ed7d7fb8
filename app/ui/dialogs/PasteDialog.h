#pragma once

#include "app/model/Dialog.h"
#include "app/ui/dialogs/DialogCard.h"
#include "app/ui/dialogs/SourceList.h"

namespace fennik::ui {

/// Asks whether so many items are to be copied or moved into a folder.
class PasteDialog final : public DialogCard {
    Q_OBJECT

public:
    using Origin = app::PasteDialog::Origin;

    /// `target` is a path, `folder` the name it ends with.
    PasteDialog(TransferKind kind, Origin origin, const SourceItems& sources, const QString& target,
                const QString& folder, const Theme& theme, Icons& icons, QWidget* parent);
};

} // namespace fennik::ui
