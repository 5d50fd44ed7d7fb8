#pragma once

#include "app/ui/UiContext.h"

#include <QObject>
#include <QPoint>
#include <QTimer>

#include <optional>
#include <vector>

class QDropEvent;
class QWidget;

namespace fennik::ui {

class DropHint;
class PanelTable;
class PathBar;
class TabStrip;

/// Files that are dragged over a panel and dropped there: into its folder, or into that of a row,
/// a crumb or a tab. Who stays over one of these opens it; who stays at the edge of the rows
/// scrolls them.
class PanelDrops final : public QObject {
    Q_OBJECT

public:
    /// All of them outlive it.
    PanelDrops(const UiContext& context, app::PanelModel& panel, PanelTable& table,
               QWidget& message, PathBar& path, TabStrip& tabs);

    /// A drop would go into this panel.
    bool isTarget() const { return place_.has_value(); }

signals:
    /// `isTarget` is another one now, or `text`, which the status line is to say; empty for none.
    void changed(const QString& text);
    void dropped(fennik::TransferKind kind, const std::vector<fennik::FileUrl>& files,
                 const fennik::FileUrl& folder);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum class Kind { panel, row, crumb, tab };
    struct Place {
        Kind kind = Kind::panel;
        int index = -1; ///< of the row, crumb or tab
        FileUrl folder = {};
        bool isInArchive = false; ///< where nothing can be put

        friend bool operator==(const Place&, const Place&) = default;
    };
    std::optional<Place> placeAt(const QWidget* widget, const QPoint& point) const;
    Place rowAt(const QPoint& point) const;
    /// Why nothing can be dropped there; none where it can.
    std::optional<std::string> obstacle(const Place& place,
                                        const std::vector<FileUrl>& files) const;
    void drag(QWidget* widget, QDropEvent& event);
    /// Shows what a drop would do there. False where it is not possible.
    bool showAt(QWidget* widget, const QPoint& point, TransferKind kind);
    void drop(QWidget* widget, QDropEvent& event);
    void show(const std::optional<Place>& place, const QString& text);
    void end();
    void openPlace();
    /// By how many rows to scroll while the mouse stays there.
    int scrollAt(const QPoint& point) const;
    void scroll();

    UiContext context_;
    app::PanelModel& panel_;
    PanelTable& table_;
    QWidget& message_; ///< lies over rows that are missing
    PathBar& path_;
    TabStrip& tabs_;
    DropHint* hint_ = nullptr; ///< once there was a drag
    std::vector<FileUrl> files_;
    std::optional<Place> place_;
    QString text_;
    QTimer dwelling_;
    QTimer scrolling_;
    QPoint lastPoint_; ///< over the rows, while they scroll
    TransferKind lastKind_ = TransferKind::copy;
};

} // namespace fennik::ui
