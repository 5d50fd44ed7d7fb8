#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QWidget>

class QLabel;

namespace fennik::ui {

class KeyButton;

/// What stands below an action whose combination cannot just be added: a question, or a refusal.
class ShortcutNote final : public QWidget {
    Q_OBJECT

public:
    ShortcutNote(const Theme& theme, Icons& icons, QWidget* parent);

    /// Asks whether the combination is to be taken away from who has it, and takes the keyboard.
    void ask(const QString& question);
    void refuse(const QString& reason);
    /// Whether the keyboard is in the question.
    bool asks() const { return kind_ == Kind::question && isVisible(); }

signals:
    void confirmed();
    void declined();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    enum class Kind { question, refusal };

    void showText(Kind kind, const QString& text);
    void takeTheme();

    const Theme& theme_;
    Icons& icons_;
    Kind kind_ = Kind::refusal;
    QLabel* text_;
    KeyButton* decline_;
    KeyButton* confirm_;
};

} // namespace fennik::ui
