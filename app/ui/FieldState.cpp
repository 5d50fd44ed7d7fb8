#include "app/ui/FieldState.h"

#include <QLineEdit>
#include <QRegularExpression>
#include <QStyle>

namespace fennik::ui {

void showInvalid(QLineEdit& field, bool isInvalid) {
    if (field.property("invalid").toBool() == isInvalid)
        return;
    field.setProperty("invalid", isInvalid);
    field.style()->polish(&field);
}

QString oneLine(const QString& text) {
    static const QRegularExpression lineBreak(QStringLiteral("[\\n\\r\\x{85}\\x{2028}\\x{2029}]+"));
    return text.split(lineBreak, Qt::SkipEmptyParts).value(0);
}

} // namespace fennik::ui
