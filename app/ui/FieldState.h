#pragma once

#include <QString>

class QLineEdit;

namespace fennik::ui {

/// Shows by the border of `field` whether its text will do.
void showInvalid(QLineEdit& field, bool isInvalid);
/// The first line of a text that may have been pasted.
QString oneLine(const QString& text);

} // namespace fennik::ui
