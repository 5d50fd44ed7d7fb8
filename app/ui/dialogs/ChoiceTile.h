#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QAbstractButton>

namespace fennik::ui {

/// A large button that tells what it does, with the letter that does it.
class ChoiceTile final : public QAbstractButton {
    Q_OBJECT

public:
    struct Texts {
        QString icon = {}; ///< for `Icons::line`
        QString title = {};
        QString detail = {};
        QString letter = {};
    };

    ChoiceTile(Texts texts, const Theme& theme, Icons& icons, QWidget* parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Texts texts_;
    const Theme& theme_;
    Icons& icons_;
};

} // namespace fennik::ui
