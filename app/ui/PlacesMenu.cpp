#include "app/ui/PlacesMenu.h"

#include "app/ui/KeyCaps.h"
#include "app/ui/MenuList.h"
#include "app/ui/StyleSheet.h"
#include "app/ui/Text.h"
#include "core/base/FileUrl.h"
#include "core/base/FoldedText.h"

#include <QAction>
#include <QKeyEvent>
#include <QLineEdit>

#include <algorithm>
#include <utility>

namespace fennik::ui {

namespace {

constexpr int menuWidth = 460;
constexpr int padding = 7;
constexpr std::size_t favoritesWithKey = 9;

QString foot() {
    return QStringLiteral("%1 otevřít · Ctrl+%1 v nové záložce · %2 odebrat z oblíbených")
        .arg(KeyCaps::enter, KeyCaps::backspace);
}

MenuRow heading(const QString& title) {
    return {
        .kind = MenuRow::Kind::heading,
        .runs = {{title, MenuRow::Tone::primary, QFont::DemiBold, FontRole::small}},
        .spoken = title,
    };
}

MenuRow message(const QString& text) {
    return {.kind = MenuRow::Kind::message, .runs = {{text}}, .spoken = text};
}

} // namespace

PlacesMenu::PlacesMenu(const Theme& theme, Icons& icons, QWidget* parent)
    : PopupCard(theme, foot(), parent),
      filter_(new QLineEdit(this)),
      list_(new MenuList(MenuList::Heights::various, theme, icons, this)) {
    setObjectName(QStringLiteral("placesMenu"));
    // The one solid accent here is the chosen row. The icon brings a padding of its own.
    wear(*filter_, theme, StyleSheet::fields,
         u"QLineEdit, QLineEdit:focus { border: 1px solid $control; padding: 1px 10u 1px 4u; }");
    filter_->setObjectName(QStringLiteral("placesFilter"));
    filter_->setPlaceholderText(QStringLiteral("Pište a filtrujte"));
    filter_->setAccessibleName(QStringLiteral("Filtr oblíbených a nedávných složek"));
    filter_->installEventFilter(this);
    list_->setAccessibleName(QStringLiteral("Oblíbené a nedávné složky"));
    connect(filter_, &QLineEdit::textChanged, this, [this] {
        listWhatFits();
        chooseNear(0);
    });
    connect(list_, &MenuList::itemClicked, this,
            [this](int row) { activate(row, Target::sameTab); });
    auto* sign = filter_->addAction(QIcon(), QLineEdit::LeadingPosition);
    sign->setText(QStringLiteral("Filtr")); // read for the button that the toolkit makes of it
    const auto takeTheme = [this, sign, &icons] {
        const auto& tokens = this->theme().tokens();
        const int side = this->theme().px(16);
        sign->setIcon(
            icons.line(QStringLiteral("search"), side, tokens.text2, devicePixelRatioF()));
        filter_->ensurePolished(); // which takes the colour of the hint from that of the text
        auto colors = filter_->palette();
        colors.setColor(QPalette::PlaceholderText, tokens.text3);
        filter_->setPalette(colors);
    };
    connect(&theme, &Theme::changed, this, takeTheme);
    takeTheme();
    listWhatFits();
}

void PlacesMenu::setPlaces(std::vector<std::string> favorites, std::vector<std::string> recents,
                           std::string home) {
    const int chosen = list_->chosen();
    favorites_ = std::move(favorites);
    recents_ = std::move(recents);
    home_ = std::move(home);
    listWhatFits();
    chooseNear(chosen);
}

void PlacesMenu::setAddLegend(const QString& legend) {
    addLegend_ = legend;
    list_->viewport()->update();
}

void PlacesMenu::popUp(const QPoint& corner) {
    filter_->clear();
    QWidget::move(corner);
    listWhatFits();
    chooseNear(0);
    show();
    filter_->setFocus(Qt::OtherFocusReason);
}

void PlacesMenu::dismiss() {
    if (isHidden())
        return;
    // A widget that is hidden while it has the keyboard hands it to the next one, which may be a
    // table of the other side.
    if (filter_->hasFocus()) {
        filter_->clearFocus(); // comes back here
        return;
    }
    hide();
    emit closed();
}

void PlacesMenu::listWhatFits() {
    using Kind = Entry::Kind;
    const auto filter = foldedText(filter_->text().toStdString());
    const auto fits = [&](const std::string& path) {
        return foldedText(path).contains(filter) ||
               foldedText(shownPath(path, home_).toStdString()).contains(filter);
    };
    std::vector<Entry> entries;
    const auto add = [&](Kind title, Kind kind, const std::vector<std::string>& paths) {
        const auto begin = entries.size();
        for (std::size_t i = 0; i < paths.size(); ++i) {
            if (fits(paths[i]))
                entries.push_back({kind, i});
        }
        if (entries.size() > begin)
            entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(begin), {title});
    };
    if (filter.empty() && favorites_.empty())
        entries = {{Kind::favorites}, {Kind::nothingYet}};
    add(Kind::favorites, Kind::favorite, favorites_);
    add(Kind::recents, Kind::recent, recents_);
    if (entries.empty())
        entries.push_back({Kind::nothingFits});
    entries.push_back({Kind::add});
    entries_ = std::move(entries);
    list_->setRows(static_cast<int>(entries_.size()), [this](int row) {
        auto shown = menuRow(entries_[static_cast<std::size_t>(row)]);
        const auto kind = entries_[static_cast<std::size_t>(row)].kind;
        if (row > 0 && (kind == Kind::recents || kind == Kind::add))
            shown.border = MenuRow::Border::above;
        return shown;
    });
    layOut();
}

void PlacesMenu::layOut() {
    const int edge = theme().px(padding);
    const int fieldHeight = filter_->sizeHint().height();
    const int listTop = edge + fieldHeight + theme().px(6);
    const int room = parentWidget()->height() - y() - theme().px(8) - listTop - footHeight();
    const int listHeight =
        std::clamp(list_->heightOf(list_->count()), 0, std::max(list_->heightOf(1), room));
    const int width =
        std::min(theme().px(menuWidth), parentWidget()->width() - x() - theme().px(8));
    resize(width, listTop + listHeight + footHeight());
    filter_->setGeometry(edge, edge, width - 2 * edge, fieldHeight);
    list_->setGeometry(1, listTop, width - 2, listHeight);
}

MenuRow PlacesMenu::menuRow(const Entry& entry) const {
    switch (entry.kind) {
    case Entry::Kind::favorites:
        return heading(QStringLiteral("Oblíbené"));
    case Entry::Kind::recents:
        return heading(QStringLiteral("Nedávné"));
    case Entry::Kind::nothingYet:
        return message(addLegend_.isEmpty()
                           ? QStringLiteral("Zatím nic")
                           : QStringLiteral("Zatím nic – %1 přidá tuto složku").arg(addLegend_));
    case Entry::Kind::nothingFits:
        return message(QStringLiteral("Tomu neodpovídá žádná složka"));
    case Entry::Kind::add: {
        const auto title = QStringLiteral("Přidat složku do oblíbených");
        return {.icon = QStringLiteral("star-plus"),
                .runs = {{title}},
                .note = addLegend_,
                .spoken = addLegend_.isEmpty() ? title : title + QStringLiteral(", ") + addLegend_};
    }
    case Entry::Kind::favorite:
    case Entry::Kind::recent:
        break;
    }
    const FileUrl place(pathOf(entry));
    const auto name = shownName(place.lastComponent());
    const auto parent = place.isRoot() ? QString() : shownPath(place.parent().path(), home_);
    const bool isFavorite = entry.kind == Entry::Kind::favorite;
    const bool hasKey = isFavorite && entry.index < favoritesWithKey && filter_->text().isEmpty();
    const auto key = hasKey ? QString::number(entry.index + 1) : QString();
    QStringList spoken{name, parent, key};
    spoken.removeAll(QString());
    return {
        .icon = isFavorite ? QString() : QStringLiteral("history"),
        .runs = {{name}, {parent, MenuRow::Tone::secondary, QFont::Normal, FontRole::detail}},
        .gap = 10,
        .note = key,
        .spoken = spoken.join(QStringLiteral(", ")),
    };
}

const std::string& PlacesMenu::pathOf(const Entry& entry) const {
    return (entry.kind == Entry::Kind::favorite ? favorites_ : recents_)[entry.index];
}

void PlacesMenu::move(int step) {
    const int count = list_->count();
    // The row that adds the folder is always there to be chosen.
    int row = list_->chosen() < 0 && step < 0 ? 0 : list_->chosen();
    do
        row = (row + step + count) % count;
    while (!list_->isChoosable(row));
    list_->choose(row);
}

/// Chooses `row`, or the next place, or else the last one. Adding a folder is chosen by itself only
/// when there is nothing to look for.
void PlacesMenu::chooseNear(int row) {
    const auto isPlace = [this](int at) {
        const auto kind = entries_[static_cast<std::size_t>(at)].kind;
        return kind == Entry::Kind::favorite || kind == Entry::Kind::recent;
    };
    const int last = list_->count() - 1;
    int place = std::clamp(row, 0, last);
    while (place < last && !isPlace(place))
        ++place;
    while (place >= 0 && !isPlace(place))
        --place;
    if (place < 0 && filter_->text().isEmpty())
        place = last;
    list_->choose(place);
    if (row == 0)
        list_->scrollToTop();
}

void PlacesMenu::activate(int row, Target target) {
    if (row < 0)
        return;
    const auto entry = entries_[static_cast<std::size_t>(row)];
    if (entry.kind == Entry::Kind::add) {
        dismiss();
        emit addRequested();
        return;
    }
    const auto path = pathOf(entry);
    dismiss();
    if (target == Target::newTab)
        emit openedInNewTab(path);
    else
        emit opened(path);
}

bool PlacesMenu::openFavorite(std::size_t number) {
    if (number < 1 || number > std::min(favoritesWithKey, favorites_.size()))
        return false;
    const auto path = favorites_[number - 1];
    dismiss();
    emit opened(path);
    return true;
}

void PlacesMenu::removeChosen() {
    const int row = list_->chosen();
    if (row < 0 || entries_[static_cast<std::size_t>(row)].kind != Entry::Kind::favorite)
        return;
    const auto path = pathOf(entries_[static_cast<std::size_t>(row)]);
    emit removed(path);
}

/// Whether the key was one of the menu's; any other edits the filter.
bool PlacesMenu::press(const QKeyEvent& event) {
    const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
    switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
        move(event.key() == Qt::Key_Up ? -1 : 1);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        activate(list_->chosen(),
                 modifiers == Qt::ControlModifier ? Target::newTab : Target::sameTab);
        return true;
    case Qt::Key_Escape:
        dismiss();
        return true;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return true;
    case Qt::Key_Backspace:
        // A key held down to clear the filter is not meant for the favourites.
        if (filter_->text().isEmpty() && modifiers == Qt::NoModifier && !event.isAutoRepeat())
            removeChosen();
        return filter_->text().isEmpty();
    default:
        break;
    }
    // By what it types: on a Czech keyboard the same key without Shift begins a word.
    const bool isDigit = event.text().size() == 1 && event.key() >= Qt::Key_1 &&
                         event.key() <= Qt::Key_9 && event.text().front().isDigit();
    return isDigit && filter_->text().isEmpty() &&
           openFavorite(static_cast<std::size_t>(event.key() - Qt::Key_0));
}

bool PlacesMenu::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::ShortcutOverride: // every key is the menu's or the filter's
        event->accept();
        return true;
    case QEvent::KeyPress:
        return press(*static_cast<QKeyEvent*>(event));
    case QEvent::FocusOut: {
        const auto reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason)
            dismiss();
        break;
    }
    default:
        break;
    }
    return PopupCard::eventFilter(watched, event);
}

} // namespace fennik::ui
