#pragma once

#include "app/ui/UiContext.h"
#include "app/ui/settings/ShortcutChip.h"
#include "core/keys/KeyCombo.h"

#include <QTimer>
#include <QWidget>

#include <string>
#include <vector>

class QHBoxLayout;
class QLabel;

namespace fennik::app {
class KeyboardLayout;
}

namespace fennik::ui {

class ElidedLabel;
class IconButton;
class KeyRecorder;
class ShortcutNote;

/// One action in the editor of shortcuts: its title, its combinations, and what changes them. A
/// list holds many of them and moves the keyboard between them.
class ShortcutRow final : public QWidget {
    Q_OBJECT

public:
    ShortcutRow(const UiContext& context, app::KeyboardLayout& layout, app::KAction action,
                QWidget* parent);

    app::KAction action() const { return action_; }
    /// Whether `combo` is one of the action's.
    bool has(const KeyCombo& combo) const;
    /// Whether the title or a legend has the folded text in it.
    bool matches(const std::u32string& folded) const;
    bool hasCollision() const;

    /// Waits for a combination to add.
    void record();
    /// Shows the shortcuts in force.
    void takeShortcuts();
    /// The keyboard is in the row, or has left it.
    void takeFocusWithin(bool isWithin);

signals:
    /// A key for the list of rows was pressed.
    void keyForList(int key);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<ShortcutChip::Look> chipLooks() const;
    void replaceChips(const std::vector<ShortcutChip::Look>& looks);
    /// The place of the chip that has the keyboard; -1 for the row itself.
    int chosenChip() const;
    void chooseChip(int place);
    void take(const KeyCombo& combo);
    void stopRecording();
    void removeChip(int place);
    void moveChip(int place, int step);
    void drag(ShortcutChip* chip, int x);
    void drop(ShortcutChip* chip);
    void flash();
    void describe();

    UiContext context_;
    app::KAction action_;
    bool isWithin_ = false;
    QTimer flash_; ///< runs while the row is lit up
    QWidget* line_;
    ElidedLabel* title_;
    QWidget* dot_;
    QLabel* none_;
    QHBoxLayout* chipRow_;
    std::vector<ShortcutChip*> chips_;
    KeyRecorder* recorder_;
    IconButton* add_;
    IconButton* reset_;
    ShortcutNote* note_;
    KeyCombo asked_; ///< that the note is about
};

} // namespace fennik::ui
