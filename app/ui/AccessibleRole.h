#pragma once

#include <QAccessible>

class QWidget;

namespace fennik::ui {

/// Tells screen readers what `widget` is where its class does not say so. To be called before
/// the widget gets a name, which makes it known to them.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

} // namespace fennik::ui
