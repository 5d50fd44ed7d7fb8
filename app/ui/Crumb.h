#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QAbstractButton>

#include <optional>

namespace fennik::ui {

/// One folder of the path bar: a flat button with a text, cut off where it has too little room. An
/// archive has its icon before the text.
class Crumb final : public QAbstractButton {
    Q_OBJECT

public:
    Crumb(const QString& title, const Theme& theme, QWidget* parent);

    /// `icons` outlives this.
    void setIcon(FileLook look, Icons& icons);
    const QString& title() const { return title_; }
    /// Whether something would be dropped into its folder.
    void setDropTarget(bool isTarget);
    void setEmphasis(QFont::Weight weight);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// Left of the text.
    int iconRoom() const;

    QString title_;
    const Theme& theme_;
    std::optional<FileLook> look_;
    Icons* icons_ = nullptr; ///< once there is an icon
    QFont::Weight weight_ = QFont::Normal;
    bool isDropTarget_ = false;
};

} // namespace fennik::ui
