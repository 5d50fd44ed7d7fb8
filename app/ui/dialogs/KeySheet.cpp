#include "app/ui/dialogs/KeySheet.h"

#include "app/ui/AccessibleRole.h"
#include "app/ui/KeyCapStrip.h"
#include "app/ui/dialogs/ElidedLabel.h"
#include "app/ui/dialogs/LabelColor.h"
#include "core/base/FoldedText.h"

#include <QBoxLayout>
#include <QLabel>

#include <algorithm>

namespace fennik::ui {

namespace {

constexpr double leastColumn = 320;
constexpr double columnGap = 24;
constexpr double partsGap = 8;
constexpr double rowHeight = 26;
constexpr double stackedHeight = 46;
constexpr double headingHeight = 32;
constexpr int mostColumns = 3;

QWidget* heading(const QString& title, const Theme& theme, QWidget* parent) {
    auto* label = new QLabel(title, parent);
    setAccessibleRole(*label, QAccessible::Heading);
    label->setAlignment(Qt::AlignLeft | Qt::AlignBottom);
    label->setContentsMargins(0, 0, 0, theme.px(4));
    label->setFont(theme.font(FontRole::small, QFont::DemiBold));
    followColor(*label, theme, &Tokens::text3);
    return label;
}

QBoxLayout* row(const KeysDialog::Row& row, const Theme& theme, QWidget* parent) {
    auto* widget = new QWidget(parent);
    setAccessibleRole(*widget, QAccessible::ListItem);
    auto* caps = new KeyCapStrip(row.keys, theme, widget);
    widget->setObjectName(QStringLiteral("keySheetRow"));
    widget->setAccessibleName(QStringLiteral("%1, %2").arg(row.title, caps->spoken()));
    auto* title = new ElidedLabel(row.title, widget);
    title->setFont(theme.font(FontRole::body));
    followColor(*title, theme, &Tokens::text);
    auto* layout = new QBoxLayout(QBoxLayout::LeftToRight, widget);
    layout->setContentsMargins({});
    layout->setSpacing(theme.px(partsGap));
    layout->addWidget(title, 1);
    layout->addWidget(caps, 0, Qt::AlignRight | Qt::AlignVCenter);
    return layout;
}

} // namespace

KeySheet::KeySheet(const Theme& theme, QWidget* parent)
    : QWidget(parent),
      theme_(theme),
      nothing_(new QLabel(QStringLiteral("Takový příkaz ani zkratka tu není."), this)) {
    setAccessibleRole(*this, QAccessible::List);
    setObjectName(QStringLiteral("keySheet"));
    setAccessibleName(QStringLiteral("Klávesové zkratky"));
    nothing_->setFont(theme.font(FontRole::body));
    nothing_->hide();
    followColor(*nothing_, theme, &Tokens::text2);
}

void KeySheet::setGroups(const std::vector<KeysDialog::Group>& groups) {
    for (const auto& line : lines_)
        delete line.widget;
    lines_.clear();
    for (const auto& group : groups) {
        lines_.push_back({.widget = heading(group.title, theme_, this), .isHeading = true});
        for (const auto& shown : group.rows) {
            auto* parts = row(shown, theme_, this);
            Line line{.widget = parts->parentWidget(), .parts = parts};
            for (const auto& text : QStringList{shown.title} + shown.keys)
                line.found.push_back(foldedText(text.toStdString()));
            lines_.push_back(std::move(line));
        }
    }
    updateGeometry();
    layOut();
}

int KeySheet::look(const QString& text) {
    const auto wanted = foldedText(text.trimmed().toStdString());
    int count = 0;
    Line* heading = nullptr;
    for (auto& line : lines_) {
        if (line.isHeading) {
            heading = &line;
            heading->isWanted = false;
            continue;
        }
        line.isWanted = std::ranges::any_of(
            line.found, [&](const auto& found) { return found.contains(wanted); });
        if (!line.isWanted)
            continue;
        heading->isWanted = true;
        ++count;
    }
    nothing_->setVisible(count == 0);
    layOut();
    return count;
}

int KeySheet::columnsIn(int width) const {
    const int gap = theme_.px(columnGap);
    return std::clamp((width + gap) / (theme_.px(leastColumn) + gap), 1, mostColumns);
}

int KeySheet::columnWidthIn(int width) const {
    const int columns = columnsIn(width);
    return (width - (columns - 1) * theme_.px(columnGap)) / columns;
}

bool KeySheet::isStacked(const Line& line, int columnWidth) const {
    if (line.parts == nullptr)
        return false;
    int wanted = theme_.px(partsGap);
    for (int i = 0; i < line.parts->count(); ++i)
        wanted += line.parts->itemAt(i)->widget()->sizeHint().width();
    return wanted > columnWidth;
}

int KeySheet::heightOf(const Line& line, int columnWidth) const {
    if (line.isHeading)
        return theme_.px(headingHeight);
    return theme_.px(isStacked(line, columnWidth) ? stackedHeight : rowHeight);
}

int KeySheet::columnsAt(int height, int columnWidth) const {
    int columns = 1;
    int y = 0;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        // A heading does not stand alone at the foot of a column.
        const bool hasNext = lines_[i].isHeading && i + 1 < lines_.size();
        const int needed =
            heightOf(lines_[i], columnWidth) + (hasNext ? heightOf(lines_[i + 1], columnWidth) : 0);
        if (y > 0 && y + needed > height) {
            ++columns;
            y = 0;
        }
        y += heightOf(lines_[i], columnWidth);
    }
    return columns;
}

int KeySheet::heightForWidth(int width) const {
    const int columns = columnsIn(width);
    const int columnWidth = columnWidthIn(width);
    int total = 0;
    for (const auto& line : lines_)
        total += heightOf(line, columnWidth);
    int height = total / columns;
    while (columnsAt(height, columnWidth) > columns)
        ++height;
    return height;
}

void KeySheet::resizeEvent(QResizeEvent*) {
    layOut();
}

void KeySheet::layOut() {
    const int gap = theme_.px(columnGap);
    const int columnWidth = columnWidthIn(width());
    const int height = heightForWidth(width());
    int x = 0;
    int y = 0;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        const auto& line = lines_[i];
        line.widget->setVisible(line.isWanted);
        if (!line.isWanted)
            continue;
        const bool hasNext = line.isHeading && i + 1 < lines_.size();
        const int own = heightOf(line, columnWidth);
        const int needed = own + (hasNext ? heightOf(lines_[i + 1], columnWidth) : 0);
        if (y > 0 && y + needed > height) {
            x += columnWidth + gap;
            y = 0;
        }
        if (line.parts != nullptr) {
            const bool stacked = isStacked(line, columnWidth);
            line.parts->setDirection(stacked ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
            line.parts->setSpacing(stacked ? 0 : theme_.px(partsGap));
        }
        line.widget->setGeometry(x, y, columnWidth, own);
        y += own;
    }
    nothing_->setGeometry(0, 0, width(), theme_.px(rowHeight));
}

} // namespace fennik::ui
