#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"
#include "core/keys/KeyCombo.h"

#include <QAbstractButton>

#include <optional>

namespace fennik::ui {

/// A combination of an action in the editor of shortcuts. Its keys are those of its row.
class ShortcutChip final : public QAbstractButton {
    Q_OBJECT

public:
    struct Look {
        KeyCombo combo = {};
        QString legend = {};
        bool isPrimary = false;
        bool collides = false;    ///< other actions have it too
        QString description = {}; ///< for screen readers

        friend bool operator==(const Look&, const Look&) = default;
    };

    ShortcutChip(const Look& look, const Theme& theme, Icons& icons, QWidget* parent);

    const Look& look() const { return look_; }
    const KeyCombo& combo() const { return look_.combo; }
    /// Whether the sign is there that removes the combination.
    void setRemovable(bool isRemovable);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    void removeRequested();
    /// The mouse drags it, and is at this place of the parent.
    void dragged(int x);
    void dropped();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    int crossRoom() const;

    Look look_;
    const Theme& theme_;
    Icons& icons_;
    bool isRemovable_ = false;
    std::optional<QPoint> pressedAt_;
    bool isDragged_ = false;
};

} // namespace fennik::ui
