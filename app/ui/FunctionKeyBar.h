#pragma once

#include "app/ui/Icons.h"
#include "app/ui/JobTexts.h"
#include "app/ui/Theme.h"

#include <QTimer>
#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

namespace fennik::ui {

class FunctionKeyCell;
class QueuePill;

/// The bar of function keys at the bottom of the window. It shows what they do together with the
/// modifiers that are held, and can be clicked. Listens to the keys of the whole application.
class FunctionKeyBar final : public QWidget {
    Q_OBJECT

public:
    enum class Availability { available, unavailable };
    struct Cell {
        QString key = {};   ///< its legend
        QString icon = {};  ///< for `Icons::line`
        QString title = {}; ///< empty where the key does nothing
        Availability availability = Availability::available;
        QString toolTip = {}; ///< plain text, why it is unavailable for example

        friend bool operator==(const Cell&, const Cell&) = default;
    };
    /// The cells while these modifiers are held: seven, and those behind the hairline, if any.
    using CellsOf = std::function<std::vector<Cell>(Qt::KeyboardModifiers held)>;

    FunctionKeyBar(CellsOf cellsOf, const Theme& theme, Icons& icons, QWidget* parent);
    ~FunctionKeyBar() override;

    /// Asks for the cells of the layer on show again.
    void refresh();
    /// What stands at the right end about the queue of jobs; none: nothing. `toolTip` is plain
    /// text.
    void setQueue(const std::optional<JobTexts::Brief>& brief, const QString& toolTip);
    Qt::KeyboardModifiers layer() const { return layer_; }

signals:
    /// The cell at `index` of this layer was clicked.
    void activated(int index, Qt::KeyboardModifiers layer);
    void queueClicked();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void hold(Qt::KeyboardModifiers held);
    void showLayer();
    void layOut();
    int roomOfQueue() const;

    CellsOf cellsOf_;
    const Theme& theme_;
    Icons& icons_;
    std::vector<FunctionKeyCell*> cells_;
    QueuePill* queue_;
    int queueRoom_ = 0; ///< that it takes from the cells
    Qt::KeyboardModifiers held_;
    Qt::KeyboardModifiers layer_; ///< on show; follows what is held
    QTimer holding_;
    int hairline_ = -1; ///< its x; none: −1
};

} // namespace fennik::ui
