#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"
#include "core/operations/TransferRequest.h"

#include <QWidget>

namespace fennik::ui {

class Shadow;

/// Says beside the mouse what a drop would do. Floats over the whole window and lets the mouse
/// through; hidden at first.
class DropHint final : public QWidget {
    Q_OBJECT

public:
    DropHint(const Theme& theme, Icons& icons, QWidget* parent);

    /// `folder` is a name as it is shown; `mouse` is in the parent's coordinates.
    void showAt(const QPoint& mouse, TransferKind kind, const QString& folder);
    QString text() const { return text_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme_;
    Icons& icons_;
    TransferKind kind_ = TransferKind::copy;
    QString text_;
};

} // namespace fennik::ui
