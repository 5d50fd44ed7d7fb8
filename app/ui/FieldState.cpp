#include "app/ui/FieldState.h"

#include <QLineEdit>
#include <QStyle>

namespace fennik::ui {

void showInvalid(QLineEdit& field, bool isInvalid) {
    if (field.property("invalid").toBool() == isInvalid)
        return;
    field.setProperty("invalid", isInvalid);
    field.style()->polish(&field);
}

} // namespace fennik::ui
