#pragma once

#include "app/ui/Theme.h"
#include "app/ui/preview/PreviewTexts.h"

#include <QGridLayout>

#include <span>

/// Titles and values side by side.
namespace fennik::ui::FactRows {

/// Puts labels for all facts into the empty `grid`, the first half of them in the first of
/// `columns` pairs of columns. The labels belong to `owner`.
void fill(QGridLayout& grid, QWidget& owner, std::span<const PreviewTexts::Fact> facts, int columns,
          const Theme& theme);
/// Takes all labels out again.
void clear(QGridLayout& grid);

} // namespace fennik::ui::FactRows
