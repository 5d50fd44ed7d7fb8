#pragma once

#include "app/ui/Theme.h"
#include "app/ui/dialogs/DialogCard.h"

#include <QPointer>
#include <QWidget>

#include <functional>

namespace fennik::ui {

/// Covers the content of a window while a dialog is open, and holds that dialog. The mouse reaches
/// nothing behind it; when the dialog goes, the keyboard returns to where it was.
class DialogHost final : public QWidget {
    Q_OBJECT

public:
    /// Covers all of `content`, whose child it is. Hidden until a dialog opens.
    DialogHost(const Theme& theme, QWidget* content);

    /// Takes the card, in place of the one that is open, and gives it the keyboard. With `beside`,
    /// the card stands over that part of the content, and the rest stays readable.
    void open(DialogCard* card, std::function<QRect()> beside = {});
    /// Without a dialog: does nothing.
    void close();
    /// None while no dialog is open.
    DialogCard* card() const { return card_; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    static void drop(DialogCard* card);
    void place();

    const Theme& theme_;
    QPointer<DialogCard> card_;
    QPointer<QWidget> returnTo_;
    std::function<QRect()> beside_;
};

} // namespace fennik::ui
