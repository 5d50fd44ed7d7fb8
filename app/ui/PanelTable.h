#pragma once

#include "app/ui/FileLook.h"
#include "app/ui/Icons.h"
#include "app/ui/PanelGeometry.h"
#include "app/ui/PanelTableModel.h"
#include "app/ui/Theme.h"

#include <QTableView>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class QTimer;

namespace fennik::ui {

class PanelHeader;

/// Where the keyboard is, as the cursor of a panel shows it.
enum class FocusLook {
    keyboard, ///< in this panel: the cursor row is solid
    near,     ///< on this side, but in a menu, a field or a dialog: tinted, with an outline
    idle,     ///< in the other panel: an outline alone
};

/// The rows of a panel. The cursor is the current index; the panel model decides where it is, and
/// the table draws it.
class PanelTable final : public QTableView {
    Q_OBJECT

public:
    PanelTable(app::PanelModel& panel, const Theme& theme, Icons& icons, QWidget* parent);

    app::PanelSide side() const { return panel_.side(); }
    void setFocusLook(FocusLook look);
    FocusLook focusLook() const { return look_; }
    /// How many whole rows are in view.
    int rowsPerPage() const;
    /// The bottom edge of the last row, or of the view where the rows go on below it.
    int rowsBottom() const;
    /// Where the cursor is in the viewport; nothing where there is no row.
    QRect cursorRect() const;
    /// Where the name of an item stands in the viewport, with the columns behind it; nothing where
    /// it has no row.
    QRect nameRect(std::string_view name) const;
    /// The name of an item without its extension; as it stands where it has no row.
    std::string baseNameOf(const std::string& name) const;
    /// Forgets the letters that were typed to find a name.
    void endSearch();
    /// The row into which something would be dropped; none with -1.
    void setDropRow(int row);

signals:
    void focused();
    /// The rows are others, or others are in view.
    void itemsPlaced();
    /// The row of the cursor is to be opened, by a double click or the keypad.
    void opened();
    /// What was typed has another meaning now: letters to search for, or none any more.
    void searchChanged(const QString& text);
    void menuOpened(bool isOpen);
    /// The menu of the item under the cursor is asked for, at this point of the screen.
    void menuRequested(const QPoint& corner);
    /// Items are being dragged away; `look` is of the one under the mouse.
    void dragStarted(const std::vector<fennik::FileUrl>& items, fennik::ui::FileLook look);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    bool focusNextPrevChild(bool) override { return false; }

private:
    void takeChanges(app::PanelChanges changes);
    void takeTheme();
    void takeItems();
    void showCursor();
    void updateRow(int row);
    void noteView();
    void updateMarks();
    /// The rows in view that are marked, in order.
    std::vector<int> markedInView() const;
    QRect rowRect(int row) const;
    /// The rows in view, the last excluded.
    std::pair<int, int> rowsInView() const;
    void wantLinkTargets();
    void paintMarks(QPainter& painter) const;
    void paintCursor(QPainter& painter) const;
    void paintDropRow(QPainter& painter) const;
    void dragItems();
    void search(const QString& typed);

    app::PanelModel& panel_;
    const Theme& theme_;
    PanelGeometry geometry_;
    PanelHeader* header_;
    FocusLook look_ = FocusLook::idle;
    int shownCursor_ = -1;
    int dropRow_ = -1;
    std::optional<QPoint> pressedAt_; ///< on a row, from where it may be dragged
    QString searched_;                ///< typed so far
    QTimer* searchTimer_;
    /// What was in view last, to be found again when the rows have changed.
    std::string shownFolder_;
    std::string topName_;
    int topRow_ = 0;
    std::vector<int> markedInView_; ///< as they are painted, or soon will be
};

} // namespace fennik::ui
