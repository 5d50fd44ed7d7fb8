#pragma once

#include "app/ui/Icons.h"
#include "app/ui/PopupCard.h"

#include <cstddef>
#include <string>
#include <vector>

namespace fennik::ui {

class MenuList;

/// The folders that complete what stands in the path field, below it. The keyboard stays in the
/// field. Rows are painted as they come into view.
class SuggestionList final : public PopupCard {
    Q_OBJECT

public:
    struct Row {
        std::string path = {};   ///< absolute bytes
        std::size_t matched = 0; ///< bytes of its last component that were typed
        QString note = {};
    };

    /// `foot` says what the keys of the field do.
    SuggestionList(QString foot, const Theme& theme, Icons& icons, QWidget* parent);

    /// Nothing is chosen then.
    void setRows(std::vector<Row> rows);
    const std::vector<Row>& rows() const { return rows_; }

    /// -1 when no row is.
    int chosen() const;
    void choose(int row);
    /// Goes round through all rows and through choosing none.
    void move(int step);

    /// Shows the list below a field, in the parent's coordinates; hides it when it has no rows.
    void showBelow(const QRect& field);

signals:
    void clicked(int row);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<Row> rows_;
    MenuList* list_;
};

} // namespace fennik::ui
