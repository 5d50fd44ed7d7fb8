#pragma once

#include "app/ui/dialogs/FieldDialog.h"
#include "app/ui/dialogs/SourceList.h"

#include <string>
#include <string_view>
#include <vector>

namespace fennik::ui {

class ElidedLabel;
class PathField;

/// A dialog about the path where items are to go. Its text is that of a `PathField`.
class TargetDialog : public FieldDialog {
    Q_OBJECT

public:
    /// As with `PathField`.
    void setSuggestions(std::vector<std::string> paths, std::string_view currentFolder);
    /// The room at the target, written out; empty where it is not known.
    void setFreeSpace(const QString& amount);

signals:
    /// The text has changed, and folders that complete it are expected.
    void typed(const QString& text);

protected:
    /// `target` is a path in bytes, or what was typed already. `option` stands below it; none where
    /// it is null.
    TargetDialog(const Texts& texts, const SourceItems& sources, std::string_view target,
                 QWidget* option, const Theme& theme, Icons& icons, QWidget* parent);

private:
    PathField* field_;
    ElidedLabel* freeSpace_;
};

} // namespace fennik::ui
