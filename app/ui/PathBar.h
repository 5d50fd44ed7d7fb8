#pragma once

#include "app/ui/UiContext.h"

#include <QWidget>

#include <memory>
#include <optional>
#include <string>
#include <vector>

class QAbstractButton;

namespace fennik::ui {

class ArchiveBadge;
class Crumb;
class IconButton;
class PathField;

/// Back, forward and up, the way to the folder as crumbs, each of which opens its folder, and a
/// field in their place while a path is being typed. In an archive the way leads on into it.
class PathBar final : public QWidget {
    Q_OBJECT

public:
    PathBar(const UiContext& context, app::PanelModel& panel, QWidget* parent);

    void setActive(bool isActive);
    /// Lets the user type a path.
    void openField();
    struct CrumbPlace {
        int index = 0;                      ///< counted from the start
        std::optional<FileUrl> folder = {}; ///< none inside an archive
    };
    std::optional<CrumbPlace> crumbAt(const QPoint& point) const;
    /// The crumb into whose folder something would be dropped; none with -1.
    void setDropCrumb(int crumb);

signals:
    void menuOpened(bool isOpen);
    /// The field is put away, and the keyboard belongs to the panel again.
    void fieldClosed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    /// Where a crumb leads.
    struct Target {
        FileUrl url = {};      ///< inside an archive, a path that leads through it
        bool isInside = false; ///< of an archive
        int archivesToLeave = 0;
        std::string inner = {}; ///< of the archive that is shown then
    };

    void takePanel();
    void addCrumbs();
    void addArchiveCrumbs(const app::ArchiveBrowse& archive, int archivesToLeave);
    Crumb& addCrumb(std::string_view title, Target target);
    void open(const Target& target);
    void layOutBadge(QRect& room);
    void takeKeys();
    void takePlaces();
    void takeTyped(const QString& text);
    void goTo(const QString& text);
    void followTyped();
    void closeField();
    void hideButtonsWithoutRoom();
    void layOutCrumbs();
    void showHiddenCrumbs();
    QRect field() const;

    UiContext context_;
    app::AppModel& app_;
    app::PanelModel& panel_;
    const Theme& theme_;
    Icons& icons_;
    IconButton* back_;
    IconButton* forward_;
    IconButton* up_;
    IconButton* star_;
    IconButton* terminal_;
    PathField* pathField_;
    int typedLoad_ = -1; ///< the load of the path that was typed
    Crumb* more_;        ///< stands for the crumbs that have no room
    std::vector<Crumb*> crumbs_;
    std::vector<Target> targets_; ///< of the crumbs
    ArchiveBadge* badge_;
    std::vector<QPoint> separators_;
    FileUrl shownLocation_;
    FileUrl shownVolume_;
    std::shared_ptr<const ArchiveIndex> shownArchive_; ///< null: none
    bool startsAtHome_ = false;
    bool isActive_ = false;
};

} // namespace fennik::ui
