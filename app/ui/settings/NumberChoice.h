#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QWidget>

#include <vector>

class QLineEdit;

namespace fennik::ui {

class DropDown;

/// A number out of a few that are offered, or one of the user's own, which is typed into a field.
class NumberChoice final : public QWidget {
    Q_OBJECT

public:
    struct Choice {
        double value = 0;
        QString title = {};
    };
    enum class Numbers { whole, fractions };
    struct Texts {
        QString name = {};   ///< for screen readers
        QString before = {}; ///< stands before the choice, may be empty
        QString after = {};  ///< stands behind it, may be empty
        QString unit = {};   ///< stands behind a number of the user's own, may be empty
    };

    NumberChoice(const Texts& texts, const std::vector<Choice>& choices, Numbers numbers,
                 const Theme& theme, Icons& icons, QWidget* parent);

    /// Shows another number, which the user has not chosen here.
    void setValue(double value);

signals:
    /// The user has chosen or typed another number. It is not negative.
    void valueChanged(double value);

private:
    void showOwn(bool isOwn);
    void showNumber();
    void takeOwn();

    std::vector<Choice> choices_;
    double value_ = -1;
    DropDown* list_;
    QWidget* own_; ///< the field and its unit
    QLineEdit* field_;
};

} // namespace fennik::ui
