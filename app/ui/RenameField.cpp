#include "app/ui/RenameField.h"

#include "app/ui/ErrorStrip.h"
#include "app/ui/FieldState.h"
#include "app/ui/NameText.h"
#include "app/ui/PanelTable.h"
#include "app/ui/StyleSheet.h"
#include "app/ui/Text.h"

#include <QKeyEvent>
#include <QScrollBar>
#include <QSignalBlocker>

namespace fennik::ui {

namespace {

bool isOwnKey(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        return !(event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier));
    default:
        return false;
    }
}

constexpr QStringView narrow =
    u"QLineEdit { min-height: 0; border-radius: 5px; padding: 0 $narrowPadding; }"
    u"QLineEdit:focus, QLineEdit[invalid=\"true\"] { padding: 0 $focusedNarrowPadding; }";

} // namespace

RenameField::RenameField(PanelTable& table, const Theme& theme, Icons& icons)
    : QLineEdit(table.viewport()),
      table_(table),
      theme_(theme),
      strip_(new ErrorStrip(theme, icons, table.viewport())) {
    hide();
    setObjectName(QStringLiteral("renameField"));
    setFont(theme.font(FontRole::body));
    table.viewport()->installEventFilter(this);
    connect(this, &QLineEdit::textEdited, this, &RenameField::takeEdit);
    connect(table.verticalScrollBar(), &QScrollBar::valueChanged, this, &RenameField::place);
    connect(&table, &PanelTable::itemsPlaced, this, &RenameField::place);
    wearOnceShown(*this, theme, StyleSheet::fields, narrow);
}

void RenameField::open(const std::string& name) {
    name_ = name;
    clearError();
    setText(NameText::fromBytes(name));
    setAccessibleName(QStringLiteral("Nový název položky %1").arg(shownName(name)));
    show();
    place();
    setFocus(Qt::OtherFocusReason);
    setSelection(0, int(NameText::fromBytes(table_.baseNameOf(name)).size()));
}

void RenameField::close() {
    if (isHidden())
        return;
    // Hiding what has the keyboard would pass it on to whatever comes next.
    const QSignalBlocker quietly(this);
    if (hasFocus())
        table_.setFocus();
    hide();
}

void RenameField::showError(const QString& message) {
    setAccessibleDescription(message);
    showInvalid(*this, true);
    strip_->showBelow(geometry(), message);
}

void RenameField::clearError() {
    strip_->hide();
    setAccessibleDescription({});
    showInvalid(*this, false);
}

void RenameField::takeEdit() {
    // A line break in what was pasted is hardly meant, unless the name had one before.
    const bool hadLines = NameText::fromBytes(name_) != oneLine(NameText::fromBytes(name_));
    if (const auto line = oneLine(text()); !hadLines && line != text())
        setText(line);
    clearError();
}

void RenameField::place() {
    if (isHidden())
        return;
    const auto area = table_.nameRect(name_);
    if (area.isNull())
        return; // the item will be listed again in a moment
    const int edge = theme_.px(7);
    setGeometry(area.adjusted(-edge, 1, 0, -1));
    if (strip_->isVisible())
        strip_->showBelow(geometry(), strip_->message());
}

bool RenameField::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && isOwnKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::KeyPress) { // before Tab moves the keyboard
        const auto& press = *static_cast<QKeyEvent*>(event);
        if (press.key() == Qt::Key_Tab || press.key() == Qt::Key_Backtab) {
            if (isOwnKey(press) && press.key() == Qt::Key_Tab)
                emit nextWanted(NameText::toBytes(text()));
            return true;
        }
    }
    return QLineEdit::event(event);
}

void RenameField::keyPressEvent(QKeyEvent* event) {
    if (!isOwnKey(*event)) {
        QLineEdit::keyPressEvent(event);
        event->accept(); // else arrows at an end of the text would move the panel's cursor
        return;
    }
    event->accept();
    if (event->key() == Qt::Key_Escape)
        emit left();
    else
        emit committed(NameText::toBytes(text()));
}

void RenameField::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    // Another window may be what the name is being copied from.
    const bool comesBack =
        event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason;
    if (!comesBack && isVisible())
        emit left();
}

void RenameField::hideEvent(QHideEvent* event) {
    clearError();
    QLineEdit::hideEvent(event);
}

bool RenameField::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && isVisible())
        place();
    return QLineEdit::eventFilter(watched, event);
}

} // namespace fennik::ui
