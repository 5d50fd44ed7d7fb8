#pragma once

#include "app/ui/Icons.h"
#include "app/ui/PopupCard.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class QKeyEvent;
class QLineEdit;

namespace fennik::ui {

class MenuList;
struct MenuRow;

/// The favourite and the recent folders as a menu with a filter, which has the keyboard while the
/// menu is shown.
class PlacesMenu final : public PopupCard {
    Q_OBJECT

public:
    PlacesMenu(const Theme& theme, Icons& icons, QWidget* parent);

    /// Absolute bytes, in the order in which they are shown. What lies in `home` is shown with "~".
    void setPlaces(std::vector<std::string> favorites, std::vector<std::string> recents,
                   std::string home);
    /// The key that adds the open folder, as it is shown; empty for none.
    void setAddLegend(const QString& legend);

    /// Shows the menu with its corner at a point of the parent.
    void popUp(const QPoint& corner);
    /// Hides the menu and leaves the keyboard to nobody.
    void dismiss();

signals:
    /// The menu is hidden before these are sent, except with `removed`.
    void opened(const std::string& path);
    void openedInNewTab(const std::string& path);
    void removed(const std::string& favorite); ///< to be answered with `setPlaces`
    void addRequested();
    /// The menu was hidden, for whatever reason.
    void closed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum class Target { sameTab, newTab };
    struct Entry {
        enum class Kind { favorites, recents, nothingYet, nothingFits, favorite, recent, add };
        Kind kind = Kind::add;
        std::size_t index = 0; ///< among the favourites or the recent folders
    };

    void listWhatFits();
    void layOut();
    bool press(const QKeyEvent& event);
    void move(int step);
    void chooseNear(int row);
    void activate(int row, Target target);
    bool openFavorite(std::size_t number);
    void removeChosen();
    const std::string& pathOf(const Entry& entry) const;
    MenuRow menuRow(const Entry& entry) const;

    QLineEdit* filter_;
    MenuList* list_;
    std::vector<std::string> favorites_;
    std::vector<std::string> recents_;
    std::string home_;
    QString addLegend_;
    std::vector<Entry> entries_;
};

} // namespace fennik::ui
