#pragma once

#include "app/model/PanelModel.h"

#include <QAbstractTableModel>

namespace fennik::ui {

enum class PanelColumn { name, size, modified, permissions };
inline constexpr int panelColumnCount = 4;

/// The sort key that a click on a column chooses.
SortKey sortKeyOf(PanelColumn column);

/// Shows a panel's items to a Qt view; the only adapter between the two. Texts are made when they
/// are asked for.
class PanelTableModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    PanelTableModel(app::PanelModel& panel, QObject* parent);

    const app::PanelModel& panel() const { return panel_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// What stands in a cell; a name without its link's target.
    QString cellText(const FileItemView& item, PanelColumn column) const;
    /// The whole row for a screen reader.
    QString rowText(const FileItemView& item) const;

private:
    QString sizeText(const FileItemView& item) const;
    void takeChanges(app::PanelChanges changes);

    app::PanelModel& panel_;
    int rows_ = 0; ///< as the view knows it
};

} // namespace fennik::ui
