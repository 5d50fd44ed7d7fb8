#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QLineEdit>

class QAbstractButton;

namespace fennik::ui {

/// A field in which a password is typed, as dots unless the user wants to see it.
class PasswordField final : public QLineEdit {
    Q_OBJECT

public:
    struct Parts {
        bool lock = false;       ///< before the text
        bool showButton = false; ///< behind the text
    };

    /// `name` is what screen readers call it.
    PasswordField(const QString& name, Parts parts, const Theme& theme, Icons& icons,
                  QWidget* parent);

    /// None where there is no such part.
    QAbstractButton* showButton() const { return showButton_; }
    void setTextShown(bool isShown);
    /// Whether a tick says that the text is right. Not together with a button.
    void setTicked(bool isTicked);

signals:
    /// The button was pressed.
    void textShownChanged(bool isShown);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    const Theme& theme_;
    Icons& icons_;
    bool hasLock_;
    bool isTicked_ = false;
    QAbstractButton* showButton_ = nullptr;
};

} // namespace fennik::ui
