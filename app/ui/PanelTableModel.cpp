#include "app/ui/PanelTableModel.h"

#include "app/ui/FileLook.h"
#include "app/ui/PanelWords.h"
#include "app/ui/Text.h"
#include "core/listing/Format.h"

namespace fennik::ui {

SortKey sortKeyOf(PanelColumn column) {
    switch (column) {
    case PanelColumn::name:
        return SortKey::name;
    case PanelColumn::size:
        return SortKey::size;
    case PanelColumn::modified:
        return SortKey::modified;
    case PanelColumn::permissions:
        break;
    }
    return SortKey::permissions;
}

PanelTableModel::PanelTableModel(app::PanelModel& panel, QObject* parent)
    : QAbstractTableModel(parent), panel_(panel) {
    connect(&panel_, &app::PanelModel::changed, this, &PanelTableModel::takeChanges);
}

void PanelTableModel::takeChanges(app::PanelChanges changes) {
    // A failure stands in place of the rows.
    const int rows = panel_.error() ? 0 : static_cast<int>(panel_.items().size());
    if (!changes.testFlag(app::PanelChange::items) && rows == rows_)
        return;
    beginResetModel();
    rows_ = rows;
    endResetModel();
}

int PanelTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rows_;
}

int PanelTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : panelColumnCount;
}

QVariant PanelTableModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole)
        return {};
    const auto item = panel_.items().view(static_cast<std::size_t>(index.row()));
    const auto column = static_cast<PanelColumn>(index.column());
    if (role == Qt::AccessibleTextRole && column == PanelColumn::name)
        return rowText(item);
    const auto text = cellText(item, column);
    return role == Qt::AccessibleTextRole && text.isEmpty() ? QStringLiteral("bez data") : text;
}

QVariant PanelTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (static_cast<PanelColumn>(section)) {
    case PanelColumn::name:
        return panel_.tab().sort.key == SortKey::ext ? QStringLiteral("Název · přípona")
                                                     : QStringLiteral("Název");
    case PanelColumn::size:
        return QStringLiteral("Velikost");
    case PanelColumn::modified:
        return QStringLiteral("Změněno");
    case PanelColumn::permissions:
        break;
    }
    return QStringLiteral("Práva");
}

QString PanelTableModel::sizeText(const FileItemView& item) const {
    if (!item.isFolderLike())
        return isSizeUnknown(panel_, item) ? QStringLiteral("—")
                                           : fromUtf8(Format::bytes(item.size));
    const auto& known = panel_.folderSizes();
    if (panel_.sizing().contains(item.name))
        return QStringLiteral("počítám…");
    const auto found = item.isParentLink ? known.end() : known.find(item.name);
    return found == known.end() ? QStringLiteral("—") : fromUtf8(Format::bytes(found->second));
}

QString PanelTableModel::cellText(const FileItemView& item, PanelColumn column) const {
    switch (column) {
    case PanelColumn::name:
        return shownName(item.name);
    case PanelColumn::size:
        return sizeText(item);
    case PanelColumn::modified:
        return czechDate(item.modified, DateDetail::minutes);
    case PanelColumn::permissions:
        break;
    }
    return fromUtf8(Format::permissions(item));
}

QString PanelTableModel::rowText(const FileItemView& item) const {
    if (item.isParentLink)
        return kindText(item);
    QStringList parts{shownName(item.name), kindText(item)};
    const bool hasSize = item.isFolderLike() ? panel_.folderSizes().contains(item.name)
                                             : !isSizeUnknown(panel_, item);
    if (hasSize)
        parts << sizeText(item);
    if (const auto date = czechDate(item.modified, DateDetail::minutes); !date.isEmpty())
        parts << QStringLiteral("změněno ") + date;
    if (item.isHidden)
        parts << QStringLiteral("skryté");
    if (panel_.marks().isMarked(item.name))
        parts << QStringLiteral("označeno");
    return parts.join(QStringLiteral(", "));
}

} // namespace fennik::ui
