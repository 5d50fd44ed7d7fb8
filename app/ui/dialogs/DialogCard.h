#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QWidget>

#include <optional>
#include <vector>

class QScrollArea;

namespace fennik::ui {

class ElidedLabel;
class KeyButton;

/// A dialog inside the window: a title, what it asks, and the buttons that answer. It keeps the
/// keyboard within; a `DialogHost` shows it and gives it its place.
class DialogCard : public QWidget {
    Q_OBJECT

public:
    enum class Tone {
        plain,
        caution, ///< something needs attention
    };
    enum class Frame {
        plain,
        portrait, ///< introduces the program with its own icon, large
        bare,     ///< nothing but the content, up to the edges
    };
    struct Texts {
        Frame frame = Frame::plain;
        QString icon = {}; ///< for `Icons::line`
        Tone tone = Tone::plain;
        QString title = {};
        QString subtitle = {};
        QString hintIcon = {};
        QString hint = {};    ///< beside the buttons, may be empty
        QString other = {};   ///< on a button that has no key; empty for none
        QString confirm = {}; ///< on the button that Enter presses; empty for none
        QString cancel = QStringLiteral("Zrušit"); ///< Esc cancels without a button too
        std::optional<FileLook> look = {};         ///< its icon stands in place of `icon`
    };

    DialogCard(const Texts& texts, const Theme& theme, Icons& icons, QWidget* parent);

    void setTitle(const QString& title);
    void setSubtitle(const QString& subtitle);
    /// What lies between title and buttons; belongs to the card, once. In a bare card it stands
    /// within the outline, whose corners it leaves to the card.
    void setContent(QWidget* content);
    /// Whether the dialog can be confirmed now.
    void setConfirmable(bool isConfirmable);

    static constexpr int usualWidth = 460;
    static constexpr int largeWidth = 680;
    /// In pixels at the default text size.
    void setPreferredWidth(int width);
    int preferredWidth() const;
    /// With which nothing has to scroll.
    int heightForWidth(int width) const override;
    bool hasHeightForWidth() const override { return true; }
    /// Gives the keyboard to the first field, with its text selected.
    void takeFocus();

signals:
    void confirmed();
    void cancelled();
    /// The button without a key was pressed.
    void otherRequested();
    /// The content needs another height.
    void heightChanged();

protected:
    /// Gives the keyboard to a widget of the card, and brings it into view.
    void focus(QWidget& widget, Qt::FocusReason reason);
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

    const Theme& theme() const { return theme_; }
    Icons& icons() const { return icons_; }
    /// The button without a key.
    KeyButton& otherButton() { return *other_; }

private:
    std::vector<QWidget*> focusOrder() const;
    void confirm();
    bool canConfirm() const;
    int margin() const;
    int tileSide() const;
    int headerHeight() const;
    /// Between the content and the buttons.
    int gapBelow() const;
    int footerHeight() const;
    void paintTile(QPainter& painter) const;

    const Theme& theme_;
    Icons& icons_;
    Frame frame_;
    QString icon_;
    Tone tone_;
    QString hintIcon_;
    int preferredWidth_ = usualWidth;
    ElidedLabel* title_;
    ElidedLabel* subtitle_;
    QScrollArea* area_;
    QWidget* content_ = nullptr;
    ElidedLabel* hint_;
    KeyButton* other_;
    KeyButton* cancel_;
    KeyButton* confirm_;
    std::optional<FileLook> look_;
};

} // namespace fennik::ui
