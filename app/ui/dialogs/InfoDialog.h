#pragma once

#include "app/model/Dialog.h"
#include "app/ui/dialogs/DialogCard.h"

class QGridLayout;
class QLabel;

namespace fennik::app {
struct ItemDetails;
}

namespace fennik::ui {

class RightsTable;
class RunLabel;

/// Tells what is known of one item.
class InfoDialog final : public DialogCard {
    Q_OBJECT

public:
    InfoDialog(const app::InfoDialog& about, const Theme& theme, Icons& icons, QWidget* parent);

    /// What has become known of it meanwhile.
    void setDetails(const app::ItemDetails& details);

signals:
    /// The path of the item is wanted.
    void copyRequested();

private:
    QLabel* addRow(const QString& title, const QString& text);
    RunLabel* addRuns(const QString& title);
    void addTitle(const QString& title);
    void addRights();
    void addArchive(const ArchiveIndex& archive, const QString& name);
    void showSize(const app::ItemDetails& details);
    void showRights(std::uint16_t mode);

    app::InfoDialog about_;
    QWidget* content_;
    QGridLayout* grid_;
    RunLabel* size_ = nullptr;
    RunLabel* counts_ = nullptr; ///< of a folder
    QLabel* date_ = nullptr;
    QLabel* link_ = nullptr;    ///< of a link
    QLabel* letters_ = nullptr; ///< of the rights
    QLabel* octal_ = nullptr;
    RightsTable* table_ = nullptr;
};

} // namespace fennik::ui
