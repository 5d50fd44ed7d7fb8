#pragma once

class QLineEdit;

namespace fennik::ui {

/// Shows by the border of `field` whether its text will do.
void showInvalid(QLineEdit& field, bool isInvalid);

} // namespace fennik::ui
