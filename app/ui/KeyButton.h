#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QAbstractButton>

namespace fennik::ui {

enum class KeyButtonLook {
    plain,
    primary, ///< what Enter does in a dialog
    small,   ///< within a strip
};

/// A button that shows its key beside its title.
class KeyButton final : public QAbstractButton {
    Q_OBJECT

public:
    KeyButton(const QString& title, const QString& key, const Theme& theme, QWidget* parent);

    void setLook(KeyButtonLook look);
    /// Names another action with another key. An empty key shows none.
    void setTitle(const QString& title, const QString& key);
    /// A line icon before the title, at first in the colour of what went well; an empty name for
    /// none.
    void setLineIcon(const QString& name, Icons& icons, QColor Tokens::* color = &Tokens::ok);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int padding() const;
    int iconRoom() const;
    double titleWidth() const;
    double keyWidth() const;
    void paintGround(QPainter& painter) const;
    void paintKey(QPainter& painter, const QRectF& area) const;

    QString key_;
    const Theme& theme_;
    KeyButtonLook look_ = KeyButtonLook::plain;
    QString icon_;
    Icons* icons_ = nullptr; ///< while there is an icon
    QColor Tokens::* iconColor_ = &Tokens::ok;
};

} // namespace fennik::ui
