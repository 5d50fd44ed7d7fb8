#pragma once

#include "app/ui/Theme.h"

#include <QLineEdit>

#include <string>
#include <string_view>

namespace fennik::ui {

/// A field for the name of an archive, whose extension stands in grey behind what is typed. Bytes
/// that are no text stay as they are.
class ArchiveNameField final : public QLineEdit {
    Q_OBJECT

public:
    /// `stem` is the name without an extension, in bytes.
    ArchiveNameField(std::string_view stem, const Theme& theme, QWidget* parent);

    /// Without a leading dot.
    void setExtension(std::string_view extension);
    /// In bytes, with the extension, which it does not get twice.
    std::string name() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// What is added to the text; empty where it ends like that already.
    QString suffix() const;
    void makeRoom();

    const Theme& theme_;
    QString extension_; ///< with its dot
};

} // namespace fennik::ui
