#include "app/ui/preview/FactRows.h"

#include "app/ui/dialogs/ElidedLabel.h"
#include "app/ui/dialogs/LabelColor.h"

#include <QLayoutItem>
#include <QWidget>

#include <memory>

namespace fennik::ui::FactRows {

void fill(QGridLayout& grid, QWidget& owner, std::span<const PreviewTexts::Fact> facts, int columns,
          const Theme& theme) {
    constexpr double titleWidth = 90;
    const auto rows = (facts.size() + std::size_t(columns) - 1) / std::size_t(columns);
    for (std::size_t i = 0; i < facts.size(); ++i) {
        const auto& [title, text] = facts[i];
        auto* label = new QLabel(title, &owner);
        auto* value = new ElidedLabel(text, &owner);
        for (QLabel* part : {label, static_cast<QLabel*>(value)})
            part->setFont(theme.font(FontRole::detail));
        value->setAccessibleName(QStringLiteral("%1: %2").arg(title, text));
        followColor(*label, theme, &Tokens::text2);
        followColor(*value, theme, &Tokens::text);
        const int row = int(i % rows);
        const int column = 2 * int(i / rows);
        grid.addWidget(label, row, column);
        grid.addWidget(value, row, column + 1);
        grid.setColumnMinimumWidth(column, theme.px(titleWidth));
        grid.setColumnStretch(column + 1, 1);
    }
}

void clear(QGridLayout& grid) {
    while (const std::unique_ptr<QLayoutItem> item{grid.takeAt(0)})
        delete item->widget();
    for (int column = 0; column < grid.columnCount(); ++column) {
        grid.setColumnMinimumWidth(column, 0);
        grid.setColumnStretch(column, 0);
    }
}

} // namespace fennik::ui::FactRows
