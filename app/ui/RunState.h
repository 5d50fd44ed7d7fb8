#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QLabel>

namespace fennik::ui {

/// A few words on how a command is doing, in their colour and with a sign. Screen readers are told
/// when they change.
class RunState final : public QLabel {
    Q_OBJECT

public:
    enum class Look { running, good, bad };

    RunState(const Theme& theme, Icons& icons, QWidget* parent);

    /// `spoken` is a whole sentence.
    void show(Look look, const QString& text, const QString& spoken);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme_;
    Icons& icons_;
    Look look_ = Look::running;
};

} // namespace fennik::ui
