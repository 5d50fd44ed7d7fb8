#pragma once

#include "app/ui/UiContext.h"
#include "core/keys/KeyCombo.h"

#include <QWidget>

#include <optional>
#include <string>
#include <vector>

class QLabel;

namespace fennik::app {
class KeyboardLayout;
}

namespace fennik::ui {

class ShortcutRow;

/// All actions in their groups, with their combinations. A single stop of the Tab key; the arrows
/// go from row to row.
class ShortcutList final : public QWidget {
    Q_OBJECT

public:
    ShortcutList(const UiContext& context, app::KeyboardLayout& layout, QWidget* parent);
    ~ShortcutList() override;

    /// Shows the rows whose title or keys have `text` in them; all of them for an empty one.
    /// Returns how many there are.
    int showMatching(const QString& text);
    /// Shows the rows with this combination. Returns how many there are.
    int showOwners(const KeyCombo& combo);
    /// Gives the keyboard to the first row that is shown.
    void takeFocus();
    /// Gives the keyboard to the first row whose combination has another action too.
    void goToCollision();

signals:
    /// The first row was left upwards.
    void leftUpwards();
    /// The keyboard is in this row now.
    void rowEntered(QWidget* row);

private:
    struct Heading {
        app::KActions::Group group = {};
        QWidget* line = nullptr;
        QLabel* count = nullptr;
    };

    void addHeading(app::KActions::Group group);
    void addRow(app::KeyboardLayout& layout, app::KAction action);
    template <class Wanted>
    int filter(Wanted isWanted);
    void takeFocusChange(QWidget* focus);
    void press(ShortcutRow* from, int key);
    std::vector<ShortcutRow*> shownRows() const;

    UiContext context_;
    std::vector<Heading> headings_;
    std::vector<ShortcutRow*> rows_;
    ShortcutRow* current_ = nullptr; ///< that has or had the keyboard
};

} // namespace fennik::ui
