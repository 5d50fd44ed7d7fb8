#pragma once

#include "app/ui/dialogs/KeysDialog.h"

#include <QWidget>

#include <vector>

class QBoxLayout;
class QLabel;

namespace fennik::ui {

/// Titles with their keys in as many columns as there is room for, in the order of reading.
class KeySheet final : public QWidget {
    Q_OBJECT

public:
    KeySheet(const Theme& theme, QWidget* parent);

    void setGroups(const std::vector<KeysDialog::Group>& groups);
    /// Shows only the rows whose title or keys contain `text`, whatever its case and diacritics,
    /// and returns their count.
    int look(const QString& text);

    /// That of all rows, so that nothing jumps while one looks for some of them.
    int heightForWidth(int width) const override;
    bool hasHeightForWidth() const override { return true; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Line {
        QWidget* widget = nullptr;
        QBoxLayout* parts = nullptr; ///< of a row: its title and its keys
        bool isHeading = false;
        bool isWanted = true;
        std::vector<std::u32string> found = {}; ///< what can be looked for, folded
    };

    int columnsIn(int width) const;
    int columnWidthIn(int width) const;
    /// Keys that have no room beside their title stand below it.
    bool isStacked(const Line& line, int columnWidth) const;
    int heightOf(const Line& line, int columnWidth) const;
    /// How many columns the lines take when none is higher than `height`.
    int columnsAt(int height, int columnWidth) const;
    void layOut();

    const Theme& theme_;
    std::vector<Line> lines_;
    QLabel* nothing_;
};

} // namespace fennik::ui
