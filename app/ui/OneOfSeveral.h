#pragma once

class QAbstractButton;

namespace fennik::ui {

/// Makes the button one of several with the same parent, of which one is chosen. The Tab key stops
/// at what is chosen; a click reaches the others too.
void makeOneOfSeveral(QAbstractButton& button);

} // namespace fennik::ui
