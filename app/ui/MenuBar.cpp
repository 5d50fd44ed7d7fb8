#include "app/ui/MenuBar.h"

#include "app/ui/ActionMenu.h"
#include "app/ui/LookChoices.h"
#include "app/ui/Text.h"
#include "core/base/Overloaded.h"

#include <QActionGroup>
#include <QMenu>
#include <QProxyStyle>
#include <QToolButton>

#include <string>
#include <vector>

namespace fennik::ui {

namespace {

/// Alt is held to see what it does with the function keys; letting go of it must not take the
/// keyboard away from the panel.
class MenuStyle final : public QProxyStyle {
public:
    using QProxyStyle::QProxyStyle;

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override {
        return hint == SH_MenuBar_AltKeyNavigation
                   ? 0
                   : QProxyStyle::styleHint(hint, option, widget, result);
    }
};

/// A menu of which one item is ticked: that of the setting's value.
template <class T>
void addChoices(QMenu& parent, const QString& title,
                const std::vector<LookChoices::Choice<T>>& choices,
                const app::SettingKey<std::string>& key, app::Settings& settings) {
    auto* menu = parent.addMenu(title);
    auto* group = new QActionGroup(menu);
    for (const auto& choice : choices) {
        const std::string name(nameOf(choice.value));
        auto* item = menu->addAction(choice.title, menu,
                                     [&settings, key, name] { settings.set(key, name); });
        item->setCheckable(true);
        group->addAction(item);
        QObject::connect(menu, &QMenu::aboutToShow, item, [&settings, key, name, item] {
            item->setChecked(settings.get(key) == name);
        });
    }
}

} // namespace

MenuBar::MenuBar(const UiContext& context, QWidget* parent) : QMenuBar(parent), context_(context) {
    setObjectName(QStringLiteral("menuBar"));
    auto* style = new MenuStyle(QStringLiteral("Fusion"));
    style->setParent(this);
    setStyle(style);
    setNativeMenuBar(false);
    build();
    takeTheme();
    connect(&context_.shortcuts, &app::ShortcutStore::changed, this, &MenuBar::build);
    connect(&context_.theme, &Theme::changed, this, &MenuBar::takeTheme);
    connect(&context_.app, &app::AppModel::changed, this, [this](app::AppChanges changes) {
        setEnabled(!context_.app.dialog());
        if (changes.testFlag(app::AppChange::undo))
            nameUndo();
    });
}

void MenuBar::takeTheme() {
    setStyleSheet(context_.theme.styleSheet(Theme::Sheet::menus));
    // The toolkit's own, where there is no room for all menus.
    auto* more = findChild<QToolButton*>(QStringLiteral("qt_menubar_ext_button"));
    if (more == nullptr)
        return;
    const int side = context_.theme.px(16);
    more->setAccessibleName(QStringLiteral("Další nabídky"));
    more->setIcon(context_.icons.line(QStringLiteral("chevrons-right"), side,
                                      context_.theme.tokens().text, devicePixelRatioF()));
    more->setIconSize({side, side});
}

void MenuBar::nameUndo() {
    for (auto* menu : findChildren<QMenu*>()) {
        for (auto* item : menu->actions()) {
            if (actionOf(*item) == app::KAction::undo)
                item->setText(itemText(context_, app::KAction::undo));
        }
    }
}

void MenuBar::open() {
    const auto first = actions();
    if (!first.isEmpty())
        setActiveAction(first.front());
}

void MenuBar::build() {
    clear();
    for (auto* menu : findChildren<QMenu*>(Qt::FindDirectChildrenOnly))
        menu->deleteLater(); // it may be the one that was chosen from
    for (const auto& [title, sections] : app::FennikCommands::menuBar()) {
        auto* menu = addMenu(fromUtf8(title));
        menu->setAccessibleName(fromUtf8(title));
        connect(menu, &QMenu::aboutToShow, this, [this] { emit menuOpened(true); });
        connect(menu, &QMenu::aboutToHide, this, [this] { emit menuOpened(false); });
        for (const auto& section : sections) {
            if (!menu->isEmpty())
                menu->addSeparator();
            for (const auto& item : section)
                std::visit(
                    Overloaded{[&](app::KAction action) { addItem(*menu, context_, action); },
                               [&](auto other) { add(*menu, other); }},
                    item);
        }
    }
}

void MenuBar::add(QMenu& menu, app::WindowCommand command) {
    connect(addItem(menu, context_, command), &QAction::triggered, this,
            [this, command] { emit commandChosen(command); });
}

void MenuBar::add(QMenu& menu, app::MenuChoice choice) {
    if (choice == app::MenuChoice::density)
        addChoices(menu, LookChoices::densityTitle, LookChoices::densities(),
                   app::SettingKeys::density, context_.app.settings());
    else
        addChoices(menu, LookChoices::lookTitle, LookChoices::looks(), app::SettingKeys::appearance,
                   context_.app.settings());
}

} // namespace fennik::ui
