#include "app/ui/KeyMonitor.h"

#include "app/ui/KeyPress.h"
#include "app/ui/PanelTable.h"
#include "app/ui/dialogs/DialogCard.h"

#include <QApplication>
#include <QKeyEvent>

namespace fennik::ui {

namespace {

/// Whether the widget belongs to a dialog, of the application or of the window alone.
bool isInDialog(const QWidget* widget) {
    while (widget != nullptr && qobject_cast<const DialogCard*>(widget) == nullptr)
        widget = widget->parentWidget();
    return widget != nullptr;
}

} // namespace

KeyMonitor::KeyMonitor(const UiContext& context, app::KeyboardLayout& layout, QWidget& window)
    : QObject(&window),
      context_(context),
      layout_(layout),
      window_(window),
      dispatcher_(context.app, context.shortcuts) {
    qApp->installEventFilter(this);
}

bool KeyMonitor::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return false;
    auto* focus = qobject_cast<QWidget*>(watched);
    const bool isOurs = focus != nullptr && focus == QApplication::focusWidget() &&
                        focus->window() == &window_ && QApplication::activePopupWidget() == nullptr;
    return isOurs && pressed(*focus, *static_cast<QKeyEvent*>(event));
}

bool KeyMonitor::pressed(QWidget& focus, const QKeyEvent& event) {
    const auto isOwned = [this](const KeyCombo& combo) {
        return context_.shortcuts.actionFor(combo).has_value();
    };
    const auto combo = KeyPress::combo(event, layout_, isOwned);
    if (!combo)
        return false;
    const bool isBlocked = context_.app.dialog() || isInDialog(&focus);
    if (auto* table = qobject_cast<PanelTable*>(&focus)) {
        if (dispatcher_.handle(*combo, table->side())) {
            emit handled(table);
            return true;
        }
    } else if (const auto action = isBlocked ? std::nullopt : actionOfMenu(*combo)) {
        context_.app.perform(*action);
        return true;
    }
    if (isBlocked)
        return false;
    if (const auto command = app::FennikCommands::commandOf(*combo, context_.shortcuts.map())) {
        emit commandWanted(*command);
        return true;
    }
    if (*combo != KeyCombo::parse("f10"))
        return false;
    emit menuBarWanted();
    return true;
}

std::optional<app::KAction> KeyMonitor::actionOfMenu(const KeyCombo& combo) const {
    auto action = context_.shortcuts.actionFor(combo);
    if (action && app::FennikCommands::menuEquivalent(*action, context_.shortcuts.map()) != combo)
        action.reset();
    return action;
}

} // namespace fennik::ui
