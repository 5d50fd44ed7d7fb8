#include "app/ui/AccessibleRole.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace fennik::ui {

namespace {

constexpr const char* roleProperty = "accessibleRole";

QAccessibleInterface* accessibleWithRole(const QString&, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    const auto role = object->property(roleProperty);
    if (widget == nullptr || !role.isValid())
        return nullptr;
    return new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt()));
}

} // namespace

void setAccessibleRole(QWidget& widget, QAccessible::Role role) {
    QAccessible::installFactory(accessibleWithRole);
    widget.setProperty(roleProperty, int(role));
}

} // namespace fennik::ui
