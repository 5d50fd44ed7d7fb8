#include "app/ui/OneOfSeveral.h"

#include <QAbstractButton>

namespace fennik::ui {

void makeOneOfSeveral(QAbstractButton& button) {
    button.setCheckable(true);
    button.setAutoExclusive(true);
    button.setFocusPolicy(Qt::ClickFocus);
    button.setAttribute(Qt::WA_Hover);
    QObject::connect(&button, &QAbstractButton::toggled, &button, [&button](bool isChosen) {
        button.setFocusPolicy(isChosen ? Qt::StrongFocus : Qt::ClickFocus);
    });
}

} // namespace fennik::ui
