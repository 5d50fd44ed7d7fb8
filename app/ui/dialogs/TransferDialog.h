#pragma once

#include "app/ui/dialogs/FieldDialog.h"
#include "app/ui/dialogs/SourceList.h"
#include "core/operations/TransferRequest.h"

#include <string>
#include <string_view>
#include <vector>

namespace fennik::ui {

class ElidedLabel;
class PathField;

/// Asks where items are to be copied or moved. Its text is that of a `PathField`.
class TransferDialog final : public FieldDialog {
    Q_OBJECT

public:
    /// `target` is a path in bytes, or what was typed already.
    TransferDialog(TransferKind kind, const SourceItems& sources, const QString& subtitle,
                   std::string_view target, const Theme& theme, Icons& icons, QWidget* parent);

    /// As with `PathField`.
    void setSuggestions(std::vector<std::string> paths, std::string_view currentFolder);
    /// The room at the target, written out; empty where it is not known.
    void setFreeSpace(const QString& amount);

signals:
    /// The text has changed, and folders that complete it are expected.
    void typed(const QString& text);

private:
    PathField* field_;
    ElidedLabel* freeSpace_;
};

} // namespace fennik::ui
