#pragma once

#include "app/ui/dialogs/TargetDialog.h"
#include "core/operations/TransferRequest.h"

namespace fennik::ui {

/// Asks where items are to be copied or moved.
class TransferDialog final : public TargetDialog {
    Q_OBJECT

public:
    /// `target` is a path in bytes, or what was typed already.
    TransferDialog(TransferKind kind, const SourceItems& sources, const QString& subtitle,
                   std::string_view target, const Theme& theme, Icons& icons, QWidget* parent);
};

} // namespace fennik::ui
