#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QWidget>

#include <cstdint>
#include <vector>

namespace fennik::ui {

/// The items that a dialog is about.
struct SourceItems {
    struct Row {
        QString name = {}; ///< as it is shown
        QString size = {}; ///< empty where it is not known
        FileLook look = FileLook::file;
        IconBadge badge = IconBadge::none;
    };
    static constexpr std::size_t mostRows = 4;

    std::vector<Row> rows = {}; ///< the first ones, at most `mostRows`
    std::int64_t count = 0;     ///< of all

    /// "4 položky", or the name of the only one between quotes.
    QString inWords() const;
};

/// Names the first items, and says how many more there are.
class SourceList final : public QWidget {
    Q_OBJECT

public:
    SourceList(SourceItems items, const Theme& theme, Icons& icons, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// Of those without a row; empty where there are none.
    QString rest() const;
    void paintRow(QPainter& painter, const SourceItems::Row& row, const QRect& area) const;

    SourceItems items_;
    const Theme& theme_;
    Icons& icons_;
};

} // namespace fennik::ui
