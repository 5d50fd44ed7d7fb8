#pragma once

#include "app/model/ports/KeyboardLayout.h"
#include "app/ui/UiContext.h"
#include "core/keys/KeyCombo.h"

#include <QWidget>

namespace fennik::ui {

/// Waits for a combination. While it has the keyboard, no key does anything else; Esc gives up.
class KeyRecorder final : public QWidget {
    Q_OBJECT

public:
    KeyRecorder(const UiContext& context, app::KeyboardLayout& layout, QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    void pressed(const fennik::KeyCombo& combo);
    /// Esc was pressed, or the keyboard has gone elsewhere within the window.
    void cancelled();

protected:
    bool event(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void take(const QKeyEvent& event);

    UiContext context_;
    app::KeyboardLayout& layout_;
};

} // namespace fennik::ui
