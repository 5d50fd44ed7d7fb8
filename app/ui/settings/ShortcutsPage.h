#pragma once

#include "app/ui/UiContext.h"

#include <QWidget>

class QAction;
class QBoxLayout;
class QLabel;
class QLineEdit;
class QScrollArea;

namespace fennik::app {
class KeyboardLayout;
}

namespace fennik::ui {

class CollisionStrip;
class DialogHost;
class KeyButton;
class KeyRecorder;
class RunLabel;
class ShortcutList;

/// The editor of shortcuts. Every edit is in force and saved at once.
class ShortcutsPage final : public QWidget {
    Q_OBJECT

public:
    /// `cards` shows questions over the window.
    ShortcutsPage(const UiContext& context, app::KeyboardLayout& layout, DialogHost& cards,
                  QWidget* parent);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* makeTop();
    void search(const QString& text);
    void findByKey();
    void takeKey(const KeyCombo& combo);
    void endFinding();
    void askToResetAll();
    void takeShortcuts();
    void takeTheme();

    UiContext context_;
    DialogHost& cards_;
    QWidget* top_;
    QBoxLayout* topRow_;
    QLineEdit* search_;
    QAction* searchIcon_;
    KeyRecorder* recorder_;
    KeyButton* find_;
    KeyButton* resetAll_;
    CollisionStrip* collisions_;
    QWidget* collisionRoom_;
    QScrollArea* area_;
    ShortcutList* list_;
    QLabel* nothing_;
    QWidget* foot_;
    RunLabel* count_;
};

} // namespace fennik::ui
