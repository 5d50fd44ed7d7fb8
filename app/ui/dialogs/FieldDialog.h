#pragma once

#include "app/ui/dialogs/DialogCard.h"
#include "app/ui/dialogs/OutcomeLine.h"

class QLineEdit;

namespace fennik::ui {

/// A dialog about the text in one field, with a line below it that says what would come of it.
class FieldDialog : public DialogCard {
    Q_OBJECT

public:
    QString text() const;
    /// An error stays until the text changes, and keeps the dialog from being confirmed.
    void setOutcome(OutcomeLine::Kind kind, const QString& sentence);
    /// Nothing can be typed while what was confirmed is being looked at.
    void setConfirming(bool isConfirming);

signals:
    /// Comes with every change by the user; `setOutcome` is expected to follow.
    void textChanged(const QString& text);
    void textConfirmed(const QString& text);

protected:
    FieldDialog(const Texts& texts, const Theme& theme, Icons& icons, QWidget* parent);

    /// Makes the content of the dialog: the field under its accessible name, the outcome, the hint.
    void showField(QLineEdit* field, const QString& hint);
    /// Both belong to the content of the dialog; to be called once.
    void watch(QLineEdit* field, OutcomeLine* outcome);
    /// Whether what was entered so far could be confirmed, unless it is refused.
    virtual bool isComplete() const;
    /// To be called when something else than the text has changed.
    void takeCompleteness();

private:
    void takeText();

    QLineEdit* field_ = nullptr;
    OutcomeLine* outcome_ = nullptr;
};

} // namespace fennik::ui
