#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QLineEdit>

#include <string>

namespace fennik::ui {

class ErrorStrip;
class PanelTable;

/// The field in which the name of an item is edited, over its row. Hidden at first.
class RenameField final : public QLineEdit {
    Q_OBJECT

public:
    RenameField(PanelTable& table, const Theme& theme, Icons& icons);

    /// Edits the name of an item that the table shows, without its extension being selected, and
    /// takes the keyboard.
    void open(const std::string& name);
    /// The keyboard goes back to the table if it was here.
    void close();
    /// Says why the name will not do, until it changes.
    void showError(const QString& message);

signals:
    /// Enter was pressed; a failure is told by `showError`.
    void committed(const std::string& name);
    /// Tab was pressed: the next item is to be renamed after this one.
    void nextWanted(const std::string& name);
    /// Esc was pressed, or the keyboard has gone elsewhere.
    void left();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void takeEdit();
    void clearError();
    void place();

    PanelTable& table_;
    const Theme& theme_;
    ErrorStrip* strip_;
    std::string name_; ///< of the item, in bytes
};

} // namespace fennik::ui
