#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QWidget>

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
    struct Texts {
        QString icon = {}; ///< for `Icons::line`
        Tone tone = Tone::plain;
        QString title = {};
        QString subtitle = {};
        QString hintIcon = {};
        QString hint = {};    ///< beside the buttons, may be empty
        QString confirm = {}; ///< on the button that Enter presses; empty for none
        QString cancel = QStringLiteral("Zrušit");
    };

    DialogCard(const Texts& texts, const Theme& theme, Icons& icons, QWidget* parent);

    void setTitle(const QString& title);
    void setSubtitle(const QString& subtitle);
    /// What lies between title and buttons; belongs to the card, once.
    void setContent(QWidget* content);
    /// Whether the dialog can be confirmed now.
    void setConfirmable(bool isConfirmable);

    static constexpr int leastWidth = 460;
    static constexpr int mostWidth = 680;
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
    /// The content needs another height.
    void heightChanged();

protected:
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

    const Theme& theme() const { return theme_; }
    Icons& icons() const { return icons_; }

private:
    std::vector<QWidget*> focusOrder() const;
    void focus(QWidget& widget, Qt::FocusReason reason);
    void confirm();
    bool canConfirm() const;
    void takeTheme();
    int headerHeight() const;
    int footerHeight() const;

    const Theme& theme_;
    Icons& icons_;
    QString icon_;
    Tone tone_;
    QString hintIcon_;
    int preferredWidth_ = leastWidth;
    ElidedLabel* title_;
    ElidedLabel* subtitle_;
    QScrollArea* area_;
    QWidget* content_ = nullptr;
    ElidedLabel* hint_;
    KeyButton* cancel_;
    KeyButton* confirm_;
};

} // namespace fennik::ui
