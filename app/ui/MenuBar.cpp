#include "app/ui/MenuBar.h"

#include "app/ui/ActionMenu.h"
#include "app/ui/LookChoices.h"
#include "app/ui/StyleSheet.h"
#include "app/ui/Text.h"
#include "core/base/Overloaded.h"

#include <QActionGroup>
#include <QMenu>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOptionMenuItem>
#include <QToolButton>

#include <string>
#include <vector>

namespace fennik::ui {

namespace {

/// Titles on the ground of the window, without a frame.
class MenuBarStyle final : public QProxyStyle {
public:
    explicit MenuBarStyle(const Theme& theme)
        : QProxyStyle(QStringLiteral("Fusion")), theme_(theme) {}

    /// Alt is held to see what it does with the function keys; letting go of it must not take the
    /// keyboard away from the panel.
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override {
        return hint == SH_MenuBar_AltKeyNavigation
                   ? 0
                   : QProxyStyle::styleHint(hint, option, widget, result);
    }

    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override {
        switch (metric) {
        case PM_MenuBarPanelWidth:
        case PM_MenuBarItemSpacing:
        case PM_MenuBarHMargin:
        case PM_MenuBarVMargin:
            return 0;
        case PM_ToolBarExtensionExtent:
            return theme_.px(24);
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
        }
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override {
        return type == CT_MenuBarItem ? size + 2 * QSize(theme_.px(10), theme_.px(5))
                                      : QProxyStyle::sizeFromContents(type, option, size, widget);
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        if (element != PE_PanelMenuBar)
            QProxyStyle::drawPrimitive(element, option, painter, widget);
    }

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        if (element == CE_MenuBarEmptyArea)
            return;
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (element == CE_MenuBarItem && item != nullptr)
            drawTitle(*item, *painter);
        else
            QProxyStyle::drawControl(element, option, painter, widget);
    }

private:
    void drawTitle(const QStyleOptionMenuItem& item, QPainter& painter) const {
        const auto& tokens = theme_.tokens();
        const bool isOpen = item.state.testFlag(State_Sunken);
        painter.save();
        if (isOpen || item.state.testFlag(State_Selected)) {
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(Qt::NoPen);
            painter.setBrush(isOpen ? tokens.pressed : tokens.hover);
            painter.drawRoundedRect(item.rect, theme_.px(5), theme_.px(5));
        }
        painter.setPen(item.state.testFlag(State_Enabled) ? tokens.text : theme_.disabledText());
        painter.drawText(item.rect, Qt::AlignCenter | Qt::TextHideMnemonic | Qt::TextSingleLine,
                         item.text);
        painter.restore();
    }

    const Theme& theme_;
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
    auto* style = new MenuBarStyle(context.theme);
    style->setParent(this);
    setStyle(style);
    setNativeMenuBar(false);
    if (auto* more = moreButton()) {
        more->setStyle(style);
        auto* rest = new QMenu(more); // which the toolkit fills
        more->setMenu(rest);
        wearOnceShown(*rest, context_.theme, StyleSheet::menus);
    }
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

QToolButton* MenuBar::moreButton() const {
    return findChild<QToolButton*>(QStringLiteral("qt_menubar_ext_button"));
}

void MenuBar::takeTheme() {
    auto* more = moreButton();
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
        wearOnceShown(*menu, context_.theme, StyleSheet::menus);
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
