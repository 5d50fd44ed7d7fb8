#include "app/ui/SuggestionList.h"

#include "app/ui/MenuList.h"
#include "app/ui/Text.h"

#include <QPainter>

#include <algorithm>
#include <string_view>
#include <utility>

namespace fennik::ui {

namespace {

constexpr int mostShown = 12;
constexpr int padding = 5;

MenuRow menuRow(const SuggestionList::Row& row, bool isForTab) {
    const std::string_view path = row.path;
    const auto nameBegin = path.rfind('/') + 1;
    const auto note = isForTab ? QStringLiteral("Tab doplní") : row.note;
    auto spoken = shownName(path);
    if (!row.note.isEmpty())
        spoken += QStringLiteral(", ") + row.note;
    return {
        .runs = {{shownName(path.substr(0, nameBegin)), MenuRow::Tone::secondary},
                 {shownName(path.substr(nameBegin, row.matched)), MenuRow::Tone::primary,
                  QFont::Bold},
                 {shownName(path.substr(nameBegin + row.matched))}},
        .note = note,
        .spoken = spoken,
    };
}

} // namespace

SuggestionList::SuggestionList(QString foot, const Theme& theme, Icons& icons, QWidget* parent)
    : PopupCard(theme, std::move(foot), parent),
      list_(new MenuList(MenuList::Heights::equal, theme, icons, this)) {
    setObjectName(QStringLiteral("suggestionList"));
    list_->setAccessibleName(QStringLiteral("Návrhy složek"));
    connect(list_, &MenuList::itemClicked, this, &SuggestionList::clicked);
}

void SuggestionList::setRows(std::vector<Row> rows) {
    rows_ = std::move(rows);
    list_->setRows(static_cast<int>(rows_.size()), [this](int row) {
        const bool isForTab = row == std::max(0, chosen());
        return menuRow(rows_[static_cast<std::size_t>(row)], isForTab);
    });
}

int SuggestionList::chosen() const {
    return list_->chosen();
}

void SuggestionList::choose(int row) {
    list_->choose(row);
    list_->viewport()->update(); // the first row tells of the key as long as none is chosen
}

void SuggestionList::move(int step) {
    const int places = list_->count() + 1;
    const int place = (chosen() + 1 + step) % places;
    choose((place + places) % places - 1);
}

void SuggestionList::showBelow(const QRect& field) {
    if (rows_.empty()) {
        hide();
        return;
    }
    const int top = field.bottom() + theme().px(5);
    const int edge = theme().px(padding);
    const int frame = edge + theme().px(4) + footHeight();
    const int row = list_->heightOf(1);
    const int room = (parentWidget()->height() - top - theme().px(8) - frame) / row;
    const int shown = std::min({mostShown, list_->count(), std::max(1, room)});
    const int left = std::max(0, field.left() - theme().px(14));
    // In a narrow panel it goes on over the other one rather than cut off its last line.
    const int wanted = std::max(field.right() - theme().px(6) - left, footWidth());
    const int width = std::min(wanted, parentWidget()->width() - left - theme().px(8));
    setGeometry(left, top, width, frame + shown * row);
    list_->setGeometry(1, edge, width - 2, shown * row);
    show();
}

void SuggestionList::paintEvent(QPaintEvent* event) {
    PopupCard::paintEvent(event);
    const int side = theme().px(8);
    QPainter(this).fillRect(side, height() - footHeight(), width() - 2 * side, 1,
                            theme().tokens().line);
}

} // namespace fennik::ui
