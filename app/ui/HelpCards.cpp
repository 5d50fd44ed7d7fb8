#include "app/ui/HelpCards.h"

#include "app/commands/FennikCommands.h"
#include "app/commands/KeyLegend.h"
#include "app/ui/PlatformWords.h"
#include "app/ui/Text.h"

#include <QFile>

#include <array>
#include <initializer_list>
#include <utility>

/// As the icons are; the macro has to stand outside every namespace.
// NOLINTNEXTLINE(misc-use-anonymous-namespace)
static void keepLicenseResources() {
    Q_INIT_RESOURCE(licenses);
}

namespace fennik::ui::HelpCards {

namespace {

using app::WindowCommand;

struct Part {
    const char* heading;
    const char* file;
};

} // namespace

std::vector<TipsDialog::Page> tips(const KeyCaps& keys) {
    using enum app::KAction;
    const auto tip = [&keys](std::initializer_list<app::KAction> actions, const char* sentence) {
        TipsDialog::Tip made{.sentence = keys.sentence(sentence)};
        for (const auto action : actions)
            made.keys += keys.all(action).mid(0, 1);
        return made;
    };
    return {
        {
            tip({switchPanel}, "Přepne panel. Ten s modrým rámečkem má klávesnici."),
            tip({toggleMark, markDown},
                "Označí položku a jde dál. Neoznačíte-li nic, platí řádek pod kurzorem."),
            tip({copy, move}, "Kopírování a přesun do druhého panelu – s rychlostí, odhadem času, "
                              "pauzou a dotazem při shodě názvů."),
            tip({undo}, "⌘Z vrátí přesun, přejmenování, novou složku i Koš"),
            tip({quickLook}, "Rychlý náhled místo druhého panelu; kurzorem listujete dál."),
            tip({focusPath, commandLine}, "Napište cestu, nebo příkaz pro shell."),
        },
        {
            tip({favorites, addFavorite},
                "Oblíbené a nedávné složky. Prvních devět oblíbených otevře číslice."),
            tip({newTab, nextTab},
                "Nová záložka a přechod na další. Po novém spuštění tu budou zas."),
            tip({markMask, unmarkMask}, "Označí nebo odznačí podle masky, například *.jpg *.png."),
            tip({markAndSize}, "Spočítá, kolik složka zabírá, a označí ji."),
            tip({pack, unpack}, "Zabalí a rozbalí. Enter na archivu ho otevře jako složku."),
            tip({rename, newFolder},
                "Přejmenuje přímo v řádku, založí složku – i několik do sebe: a/b/c."),
        },
    };
}

std::vector<KeysDialog::Group> keys(const app::ShortcutStore& shortcuts) {
    const KeyCaps caps(shortcuts);
    std::vector<KeysDialog::Group> groups;
    for (const auto group : app::KActions::allGroups) {
        KeysDialog::Group shown{.title = fromUtf8(app::KActions::title(group))};
        for (const auto action : app::KActions::all()) {
            if (app::KActions::group(action) == group)
                shown.rows.push_back({PlatformWords::title(action), caps.all(action)});
        }
        groups.push_back(std::move(shown));
    }
    KeysDialog::Group fixed{.title = QStringLiteral("Stálé klávesy"),
                            .rows = {{QStringLiteral("Pohyb kurzoru"),
                                      {QStringLiteral("↑"), QStringLiteral("↓"),
                                       QStringLiteral("PgUp"), QStringLiteral("PgDn")}},
                                     {QStringLiteral("Skok na název"), {QStringLiteral("písmena")}},
                                     {QStringLiteral("Nabídky"), {QStringLiteral("F10")}}}};
    const auto& map = shortcuts.map();
    if (const auto combo = app::FennikCommands::fixedCombo(WindowCommand::shortcuts, map))
        fixed.rows.push_back({fromUtf8(app::FennikCommands::title(WindowCommand::shortcuts)),
                              {fromUtf8(app::KeyLegend::legend(*combo, map))}});
    groups.push_back(std::move(fixed));
    return groups;
}

QString licenses() {
    keepLicenseResources();
    static constexpr std::array parts{
        Part{"Fennik – MIT", "fennik"},
        Part{"Qt – GNU Lesser General Public License 3, https://code.qt.io", "qt"},
        Part{"libarchive – BSD, https://libarchive.org", "libarchive"},
        Part{"ICU – Unicode, https://icu.unicode.org", "icu"},
        Part{"JSON for Modern C++ – MIT, https://json.nlohmann.me", "json"},
        Part{"MediaInfo, v programu fennik-preview – BSD, https://mediaarea.net", "mediainfo"},
        Part{"Písmo Inter – SIL Open Font License 1.1, https://rsms.me/inter", "inter"},
        Part{"Ikony Lucide – ISC, https://lucide.dev", "lucide"},
        Part{"Poppler, v programu fennik-preview – GNU General Public License, "
             "https://poppler.freedesktop.org; odvolává se na ni i licence Qt",
             "gpl"},
    };
    QStringList texts;
    for (const auto& [heading, name] : parts) {
        QFile file(QStringLiteral(":/licenses/%1.txt").arg(QLatin1String(name)));
        const auto text =
            file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
        const auto title = QString::fromUtf8(heading);
        texts << title + QLatin1Char('\n') + QString(title.size(), QLatin1Char('=')) +
                     QStringLiteral("\n\n") + text.trimmed();
    }
    return texts.join(QStringLiteral("\n\n\n"));
}

} // namespace fennik::ui::HelpCards
