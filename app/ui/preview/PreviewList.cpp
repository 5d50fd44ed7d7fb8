#include "app/ui/preview/PreviewList.h"

#include "app/ui/FileLook.h"
#include "app/ui/TabularText.h"
#include "app/ui/Text.h"
#include "core/listing/Format.h"

#include <QAbstractItemDelegate>
#include <QPainter>
#include <QScrollBar>

namespace fennik::ui {

namespace {

constexpr double rowHeight = 24;
constexpr double margin = 16;
constexpr double sizeWidth = 86;

QString sizeOf(const app::PreviewList& list, const FileItemView& item) {
    if (!item.isFolderLike())
        return fromUtf8(Format::bytes(item.size));
    const auto known = list.folderSizes.find(item.name);
    return known == list.folderSizes.end() ? QStringLiteral("—")
                                           : fromUtf8(Format::bytes(known->second));
}

} // namespace

class PreviewList::Items final : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    void take(const app::PreviewList& list) {
        beginResetModel();
        list_ = list;
        endResetModel();
    }
    const app::PreviewList& list() const { return list_; }
    FileItemView item(const QModelIndex& index) const {
        return list_.items.view(static_cast<std::size_t>(index.row()));
    }

    int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(list_.items.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role == Qt::DisplayRole)
            return shownName(item(index).name);
        if (role != Qt::AccessibleTextRole)
            return {};
        const auto shown = item(index);
        QStringList parts{shownName(shown.name), kindText(shown)};
        if (!shown.isFolderLike())
            parts << sizeOf(list_, shown);
        return parts.join(QStringLiteral(", "));
    }

private:
    app::PreviewList list_;
};

class PreviewList::Rows final : public QAbstractItemDelegate {
public:
    Rows(const Theme& theme, Icons& icons, QObject* parent)
        : QAbstractItemDelegate(parent), theme_(theme), icons_(icons) {}

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
        return {0, theme_.px(rowHeight)};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const auto& items = *static_cast<const Items*>(index.model());
        const auto item = items.item(index);
        const auto& tokens = theme_.tokens();
        const auto row = QRectF(option.rect).adjusted(theme_.px(margin), 0, -theme_.px(margin), 0);
        const int side = theme_.px(16);
        const auto icon =
            icons_.file(lookOf(item), item.isLink() ? IconBadge::link : IconBadge::none,
                        IconGround::panelInactive, side, painter->device()->devicePixelRatioF());
        painter->drawPixmap(QPointF(row.left(), row.top() + (row.height() - side) / 2), icon);
        const double size = theme_.px(sizeWidth);
        const auto name = row.adjusted(side + theme_.px(8), 0, -size, 0);
        painter->setFont(theme_.font(FontRole::body));
        painter->setPen(item.isHidden ? tokens.text3 : tokens.text);
        painter->drawText(name, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                          QFontMetricsF(painter->font())
                              .elidedText(shownName(item.name), Qt::ElideMiddle, name.width()));
        painter->setFont(theme_.font(FontRole::detail));
        painter->setPen(tokens.text2);
        TabularText::draw(*painter, QRectF(name.right(), row.top(), size, row.height()),
                          Qt::AlignRight, sizeOf(items.list(), item));
    }

private:
    const Theme& theme_;
    Icons& icons_;
};

PreviewList::PreviewList(const Theme& theme, Icons& icons, QWidget* parent)
    : QListView(parent), items_(new Items(this)) {
    setObjectName(QStringLiteral("previewList"));
    setAccessibleName(QStringLiteral("Obsah"));
    setModel(items_);
    setItemDelegate(new Rows(theme, icons, this));
    setUniformItemSizes(true);
    setFocusPolicy(Qt::NoFocus);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    setViewportMargins(0, theme.px(6), 0, theme.px(6));
}

PreviewList::~PreviewList() = default;

void PreviewList::show(const app::PreviewList& list) {
    items_->take(list);
    scrollToTop();
}

} // namespace fennik::ui
