#include "app/ui/settings/SettingsPages.h"

#include "app/ui/LookChoices.h"
#include "app/ui/Text.h"
#include "app/ui/dialogs/SegmentedControl.h"
#include "app/ui/settings/DropDown.h"
#include "app/ui/settings/EditorField.h"
#include "app/ui/settings/NumberChoice.h"
#include "app/ui/settings/SettingsForm.h"

#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <string>

namespace fennik::ui::SettingsPages {

namespace {

namespace Keys = app::SettingKeys;
using Number = NumberChoice::Choice;

/// Choices of which one is the value of a setting, by its name.
template <class T>
SegmentedControl* segments(SettingsForm& form, const UiContext& context, const QString& title,
                           const std::vector<LookChoices::Choice<T>>& choices,
                           const app::SettingKey<std::string>& key) {
    std::vector<SegmentedControl::Choice> shown;
    for (const auto& choice : choices)
        shown.push_back({.title = choice.title, .icon = choice.icon});
    auto* control = new SegmentedControl(title, shown, context.theme, context.icons, &form);
    control->setMaximumWidth(control->naturalWidth());
    form.follow([control, choices, key, &settings = context.app.settings()] {
        const auto name = settings.get(key);
        const auto found = std::ranges::find_if(
            choices, [&](const auto& choice) { return nameOf(choice.value) == name; });
        if (found != choices.end())
            control->choose(int(found - choices.begin()));
    });
    QObject::connect(control, &SegmentedControl::chosenChanged, &form,
                     [&form, choices, key](int index) {
                         form.put(key, std::string(nameOf(choices[std::size_t(index)].value)));
                     });
    return control;
}

/// A field and what stands below it.
QWidget* withHint(QWidget* field, QLabel* hint, SettingsForm& form, const Theme& theme) {
    auto* both = new QWidget(&form);
    auto* column = new QVBoxLayout(both);
    column->setContentsMargins({});
    column->setSpacing(theme.px(4));
    column->addWidget(field);
    column->addWidget(hint);
    return both;
}

/// "Terminál (F9)": what the row is about, with the key that does it.
QString labelWithKey(const QString& pattern, const QString& key) {
    return key.isEmpty() ? QString(pattern).remove(QStringLiteral(" (%1)")) : pattern.arg(key);
}

struct TerminalChoice {
    const char* value = nullptr;
    const char* title = nullptr;
};
constexpr std::array terminals{TerminalChoice{"terminal", "Terminál"},
                               TerminalChoice{"iterm", "iTerm2"}};

DropDown* terminalChoice(SettingsForm& form, const UiContext& context) {
    auto* list = new DropDown(QStringLiteral("Terminál"), context.theme, context.icons, &form);
    list->setObjectName(QStringLiteral("terminalApp"));
    for (const auto& terminal : terminals)
        list->addItem(QString::fromUtf8(terminal.title));
    form.follow([list, &settings = context.app.settings()] {
        const auto chosen = settings.get(Keys::terminalApp);
        const auto found = std::ranges::find(terminals, chosen, &TerminalChoice::value);
        list->setCurrentIndex(found == terminals.end() ? 0 : int(found - terminals.begin()));
    });
    QObject::connect(list, &QComboBox::activated, &form, [&form](int index) {
        form.put(Keys::terminalApp, std::string(terminals[std::size_t(index)].value));
    });
    return list;
}

} // namespace

QWidget* general(const UiContext& context) {
    auto* form = new SettingsForm(context, nullptr);
    form->setObjectName(QStringLiteral("generalPage"));
    auto* looks =
        segments(*form, context, LookChoices::lookTitle, LookChoices::looks(), Keys::appearance);
    looks->setObjectName(QStringLiteral("appearance"));
    form->addRow(LookChoices::lookTitle, looks);
    auto* densities = segments(*form, context, LookChoices::densityTitle, LookChoices::densities(),
                               Keys::density);
    densities->setObjectName(QStringLiteral("density"));
    form->addRow(LookChoices::densityTitle,
                 withHint(densities,
                          form->hint(QStringLiteral(
                              "20, 24 nebo 30 bodů na řádek; roste s velikostí písma.")),
                          *form, context.theme));
    form->addSwitch(QStringLiteral("Soubory"), Keys::showHidden,
                    QStringLiteral("Zobrazit skryté soubory"), QStringLiteral("showHidden"));
    form->addSwitch({}, Keys::autoFolderSizes, QStringLiteral("Počítat velikosti složek samo"),
                    QStringLiteral("autoFolderSizes"), "Jen na vnitřních discích, nikdy na síti.");
    auto* editorField = new EditorField(context, form);
    form->follow([editorField, &settings = context.app.settings()] {
        editorField->setValue(fromUtf8(settings.get(Keys::editorApp)));
    });
    QObject::connect(editorField, &EditorField::valueChanged, form, [form](const QString& value) {
        form->put(Keys::editorApp, value.toStdString());
    });
    auto* editor = form->addRow(QStringLiteral("Upravit v"), editorField);
    auto* hint =
        form->hint(QStringLiteral("V tomto systému otevřou obě volby jeho výchozí terminál."));
    auto* terminal =
        form->addRow(QStringLiteral("Terminál"),
                     withHint(terminalChoice(*form, context), hint, *form, context.theme));
    form->follow([editor, keys = context.keys()] {
        editor->setText(
            labelWithKey(QStringLiteral("Upravit (%1) v"), keys.of(app::KAction::edit)));
    });
    form->follow([terminal, keys = context.keys()] {
        terminal->setText(
            labelWithKey(QStringLiteral("Terminál (%1)"), keys.of(app::KAction::terminal)));
    });
    return form;
}

QWidget* operations(const UiContext& context) {
    auto* form = new SettingsForm(context, nullptr);
    form->setObjectName(QStringLiteral("operationsPage"));
    form->addSwitch(QStringLiteral("Koš"), Keys::confirmTrash,
                    QStringLiteral("Ptát se před přesunem do Koše"), QStringLiteral("confirmTrash"),
                    "Vrátit to jde vždy: ⌘Z.");

    std::vector<Number> thresholds;
    for (const int count : {5, 10, 20, 50, 100})
        thresholds.push_back({double(count), QString::number(count)});
    auto* threshold = new NumberChoice({.name = QStringLiteral("Ptát se od víc než tolika položek"),
                                        .before = QStringLiteral("Ptát se od víc než"),
                                        .after = QStringLiteral("položek")},
                                       thresholds, NumberChoice::Numbers::whole, context.theme,
                                       context.icons, form);
    threshold->setObjectName(QStringLiteral("confirmThreshold"));
    auto& settings = context.app.settings();
    form->follow([threshold, &settings] {
        threshold->setValue(double(settings.get(Keys::confirmThreshold)));
    });
    QObject::connect(threshold, &NumberChoice::valueChanged, form, [form](double count) {
        form->put(Keys::confirmThreshold, std::int64_t(count));
    });
    form->addRow(QStringLiteral("Vložení a přetažení"), threshold);

    std::vector<Number> speeds{{0, QStringLiteral("bez omezení")}};
    for (const int speed : {1, 5, 10, 25, 50, 100})
        speeds.push_back({double(speed), QStringLiteral("%1 MB/s").arg(speed)});
    auto* throttle = new NumberChoice({.name = QStringLiteral("Rychlost přenosu nejvýše"),
                                       .before = QStringLiteral("Nejvýše"),
                                       .unit = QStringLiteral("MB/s")},
                                      speeds, NumberChoice::Numbers::fractions, context.theme,
                                      context.icons, form);
    throttle->setObjectName(QStringLiteral("throttleMBps"));
    form->follow([throttle, &settings] { throttle->setValue(settings.get(Keys::throttleMBps)); });
    QObject::connect(throttle, &NumberChoice::valueChanged, form,
                     [form](double speed) { form->put(Keys::throttleMBps, speed); });
    form->addRow(QStringLiteral("Rychlost přenosu"), throttle);

    form->addSwitch(QStringLiteral("Fronta operací"), Keys::autoHideQueue,
                    QStringLiteral("Po dokončení se schová sama"), QStringLiteral("autoHideQueue"));
    form->addSwitch(QStringLiteral("Rozbalování"), Keys::extractIntoOwnFolder,
                    QStringLiteral("Každý archiv do vlastní složky"),
                    QStringLiteral("extractOwnFolder"));
    return form;
}

} // namespace fennik::ui::SettingsPages
