#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QListView>

#include <functional>
#include <vector>

namespace fennik::ui {

/// One line of a list that looks like a menu.
struct MenuRow {
    enum class Kind {
        item,    ///< can be chosen
        heading, ///< over the items that follow
        message, ///< where there are no items
    };
    enum class Tone { primary, secondary };
    struct Run {
        QString text = {};
        Tone tone = Tone::primary;
        QFont::Weight weight = QFont::Normal;
        FontRole role = FontRole::body;
    };
    enum class Border { none, above };

    Kind kind = Kind::item;
    Border border = Border::none;
    QString icon = {};          ///< of `Icons::line`; none is a folder
    std::vector<Run> runs = {}; ///< where there is no room for all, the secondary ones are cut
    double gap = 0;             ///< between the runs
    QString note = {};          ///< at the right end
    QString spoken = {};        ///< what screen readers hear
};

/// Rows that are made as they are painted, one of which may be chosen. The keyboard stays where it
/// is.
class MenuList final : public QListView {
    Q_OBJECT

public:
    /// Whether all rows are items of one height, so that none has to be asked for its own.
    enum class Heights { equal, various };

    MenuList(Heights heights, const Theme& theme, Icons& icons, QWidget* parent);

    /// `rowAt` makes the row at a place below `count`, and is asked whenever one is looked at.
    void setRows(int count, std::function<MenuRow(int)> rowAt);
    int count() const { return count_; }
    MenuRow row(int place) const { return rowAt_(place); }
    bool isChoosable(int place) const;

    /// -1 when no row is.
    int chosen() const { return currentIndex().row(); }
    /// Chooses a row and scrolls to it; none with -1.
    void choose(int place);

    /// The height that shows the first `count` rows.
    int heightOf(int count) const;
    int rowHeight(const MenuRow& row) const;

signals:
    /// An item was, not a heading or a message.
    void itemClicked(int row);

private:
    class Model;
    class Painter;

    Heights heights_;
    const Theme& theme_;
    int count_ = 0;
    std::function<MenuRow(int)> rowAt_;
    Model* model_;
};

} // namespace fennik::ui
