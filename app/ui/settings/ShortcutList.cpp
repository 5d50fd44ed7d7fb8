#include "app/ui/settings/ShortcutList.h"

#include "app/ui/AccessibleRole.h"
#include "app/ui/Text.h"
#include "app/ui/dialogs/LabelColor.h"
#include "app/ui/settings/ShortcutRow.h"
#include "core/base/CzechText.h"
#include "core/base/FoldedText.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>

#include <algorithm>
#include <iterator>

namespace fennik::ui {

namespace {

constexpr int rowsPerPage = 10;

QString commandCount(int count) {
    return QStringLiteral("%1 %2").arg(count).arg(
        fromUtf8(pluralForm(count, {"příkaz", "příkazy", "příkazů"})));
}

} // namespace

ShortcutList::ShortcutList(const UiContext& context, app::KeyboardLayout& layout, QWidget* parent)
    : QWidget(parent), context_(context) {
    setAccessibleRole(*this, QAccessible::List);
    setObjectName(QStringLiteral("shortcutList"));
    setAccessibleName(QStringLiteral("Zkratky"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    for (const auto group : app::KActions::allGroups) {
        addHeading(group);
        for (const auto action : app::KActions::all())
            if (app::KActions::group(action) == group)
                addRow(layout, action);
    }
    column->addStretch();
    showMatching({});
    connect(&context_.shortcuts, &app::ShortcutStore::changed, this, [this] {
        for (auto* row : rows_)
            row->takeShortcuts();
    });
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget*, QWidget* focus) { takeFocusChange(focus); });
}

ShortcutList::~ShortcutList() {
    // The focus moves while the rows go.
    disconnect(qApp, nullptr, this, nullptr);
}

void ShortcutList::addHeading(app::KActions::Group group) {
    const auto& theme = context_.theme;
    auto* line = new QWidget(this);
    auto* title = new QLabel(fromUtf8(app::KActions::title(group)), line);
    title->setFont(theme.font(FontRole::detail, QFont::DemiBold));
    followColor(*title, theme, &Tokens::text2);
    auto* count = new QLabel(line);
    count->setFont(theme.font(FontRole::detail));
    followColor(*count, theme, &Tokens::text3);
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(theme.px(16), theme.px(12), theme.px(16), theme.px(4));
    row->addWidget(title, 1);
    row->addWidget(count);
    layout()->addWidget(line);
    headings_.push_back({group, line, count});
}

void ShortcutList::addRow(app::KeyboardLayout& layout, app::KAction action) {
    auto* row = new ShortcutRow(context_, layout, action, this);
    row->setFocusPolicy(Qt::ClickFocus);
    connect(row, &ShortcutRow::keyForList, this, [this, row](int key) { press(row, key); });
    this->layout()->addWidget(row);
    rows_.push_back(row);
}

template <class Wanted>
int ShortcutList::filter(Wanted isWanted) {
    int whole = 0;
    for (auto* row : rows_)
        row->setVisible(isWanted(*row));
    for (const auto& [group, line, count] : headings_) {
        const auto shown = std::ranges::count_if(rows_, [group = group](const auto* row) {
            return app::KActions::group(row->action()) == group && !row->isHidden();
        });
        line->setVisible(shown > 0);
        count->setText(commandCount(int(shown)));
        whole += int(shown);
    }
    const auto rows = shownRows();
    if (std::ranges::find(rows, current_) == rows.end())
        current_ = rows.empty() ? nullptr : rows.front();
    for (auto* row : rows_)
        row->setFocusPolicy(row == current_ ? Qt::StrongFocus : Qt::ClickFocus);
    return whole;
}

int ShortcutList::showMatching(const QString& text) {
    const auto folded = foldedText(text.trimmed().toStdString());
    return filter([&](const ShortcutRow& row) { return row.matches(folded); });
}

int ShortcutList::showOwners(const KeyCombo& combo) {
    return filter([&](const ShortcutRow& row) { return row.has(combo); });
}

void ShortcutList::takeFocus() {
    if (const auto rows = shownRows(); !rows.empty())
        rows.front()->setFocus(Qt::OtherFocusReason);
}

void ShortcutList::goToCollision() {
    const auto rows = shownRows();
    const auto found = std::ranges::find_if(rows, &ShortcutRow::hasCollision);
    if (found != rows.end())
        (*found)->setFocus(Qt::OtherFocusReason);
}

std::vector<ShortcutRow*> ShortcutList::shownRows() const {
    std::vector<ShortcutRow*> shown;
    std::ranges::copy_if(rows_, std::back_inserter(shown),
                         [](const auto* row) { return !row->isHidden(); });
    return shown;
}

void ShortcutList::takeFocusChange(QWidget* focus) {
    if (focus == nullptr)
        return; // of a window in the background, which will have it again
    for (auto* row : rows_) {
        const bool isWithin = row == focus || row->isAncestorOf(focus);
        row->takeFocusWithin(isWithin);
        if (!isWithin)
            continue;
        if (current_ != nullptr)
            current_->setFocusPolicy(Qt::ClickFocus);
        current_ = row;
        row->setFocusPolicy(Qt::StrongFocus);
        emit rowEntered(row);
    }
}

void ShortcutList::press(ShortcutRow* from, int key) {
    const auto rows = shownRows();
    const int last = int(rows.size()) - 1;
    const int place = int(std::ranges::find(rows, from) - rows.begin());
    if (key == Qt::Key_Up && place == 0) {
        emit leftUpwards();
        return;
    }
    const int target = key == Qt::Key_Up         ? place - 1
                       : key == Qt::Key_Down     ? place + 1
                       : key == Qt::Key_PageUp   ? place - rowsPerPage
                       : key == Qt::Key_PageDown ? place + rowsPerPage
                       : key == Qt::Key_Home     ? 0
                                                 : last;
    rows[std::size_t(std::clamp(target, 0, last))]->setFocus(Qt::OtherFocusReason);
}

} // namespace fennik::ui
