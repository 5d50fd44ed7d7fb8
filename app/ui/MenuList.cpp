#include "app/ui/MenuList.h"

#include <QAbstractListModel>
#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>
#include <cmath>
#include <utility>

namespace fennik::ui {

namespace {

constexpr int itemHeight = 28;
constexpr int headingHeight = 26;
constexpr int borderRoom = 11;
constexpr int inset = 5;   ///< of the chosen row's shape
constexpr int padding = 9; ///< inside of it
constexpr int iconSide = 16;
constexpr int iconGap = 9;

} // namespace

class MenuList::Model final : public QAbstractListModel {
public:
    explicit Model(const MenuList& list) : list_(list) {}

    int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : list_.count_;
    }
    QVariant data(const QModelIndex& index, int role) const override {
        const bool isText = role == Qt::DisplayRole || role == Qt::AccessibleTextRole;
        return isText ? list_.row(index.row()).spoken : QVariant();
    }
    Qt::ItemFlags flags(const QModelIndex& index) const override {
        const bool isItem = list_.isChoosable(index.row());
        return isItem ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren
                      : Qt::ItemNeverHasChildren;
    }
    template <class Replace>
    void replace(Replace change) {
        beginResetModel();
        change();
        endResetModel();
    }

private:
    const MenuList& list_;
};

class MenuList::Painter final : public QStyledItemDelegate {
public:
    Painter(MenuList& list, Icons& icons)
        : QStyledItemDelegate(&list), list_(list), theme_(list.theme_), icons_(icons) {}

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const override {
        return {0, list_.heights_ == Heights::equal ? theme_.px(itemHeight)
                                                    : list_.rowHeight(list_.row(index.row()))};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const auto row = list_.row(index.row());
        const auto& tokens = theme_.tokens();
        QRect area = option.rect;
        if (row.border == MenuRow::Border::above) {
            const int side = theme_.px(8);
            painter->fillRect(area.left() + side, area.top() + theme_.px(borderRoom) / 2,
                              area.width() - 2 * side, 1, tokens.line);
            area.setTop(area.top() + theme_.px(borderRoom));
        }
        const auto shape = area.adjusted(theme_.px(inset), 0, -theme_.px(inset), 0);
        const auto inner = shape.adjusted(theme_.px(padding), 0, -theme_.px(padding), 0);
        if (row.kind != MenuRow::Kind::item) {
            paintRuns(*painter, row, inner, {tokens.text2, tokens.text2, tokens.text2});
            return;
        }
        const bool isChosen = index.row() == list_.chosen();
        const bool isUnderMouse = option.state & QStyle::State_MouseOver;
        if (isChosen || isUnderMouse) {
            painter->setRenderHint(QPainter::Antialiasing);
            painter->setPen(Qt::NoPen);
            painter->setBrush(isChosen ? tokens.accent : tokens.hover);
            painter->drawRoundedRect(shape, 5, 5);
        }
        const auto colors = isChosen ? Colors{tokens.onAccent, tokens.onAccent2, tokens.onAccent2}
                                     : Colors{tokens.text, tokens.text2, tokens.text2};
        const int side = theme_.px(iconSide);
        const double ratio = option.widget->devicePixelRatioF();
        const auto icon =
            row.icon.isEmpty()
                ? icons_.file(FileLook::folder, IconBadge::none,
                              isChosen ? IconGround::accent : IconGround::panel, side, ratio)
                : icons_.line(row.icon, side, isChosen ? tokens.onAccent : tokens.text, ratio);
        painter->drawPixmap(inner.left(), area.top() + (area.height() - side) / 2, icon);
        paintRuns(*painter, row, inner.adjusted(side + theme_.px(iconGap), 0, 0, 0), colors);
    }

private:
    struct Colors {
        QColor primary;
        QColor secondary;
        QColor note;
    };

    void paintRuns(QPainter& painter, const MenuRow& row, QRectF room, const Colors& colors) const {
        if (!row.note.isEmpty()) {
            painter.setFont(theme_.font(FontRole::small));
            painter.setPen(colors.note);
            painter.drawText(room, Qt::AlignRight | Qt::AlignVCenter, row.note);
            room.setRight(room.right() - QFontMetricsF(painter.font()).horizontalAdvance(row.note) -
                          theme_.px(padding));
        }
        const double gap = theme_.px(row.gap);
        double excess = -gap - room.width();
        for (const auto& run : row.runs)
            excess += gap + metrics(run).horizontalAdvance(run.text);
        for (const auto& run : row.runs) {
            const auto runMetrics = metrics(run);
            const bool isSecondary = run.tone == MenuRow::Tone::secondary;
            const double whole = runMetrics.horizontalAdvance(run.text);
            double width = std::min(whole, room.width());
            if (isSecondary && excess > 0)
                width = std::clamp(whole - excess, 0.0, width);
            // A text of just its own width would be cut by rounding.
            const auto text =
                width < whole ? runMetrics.elidedText(
                                    run.text, isSecondary ? Qt::ElideMiddle : Qt::ElideRight, width)
                              : run.text;
            const double drawn = runMetrics.horizontalAdvance(text);
            painter.setFont(theme_.font(run.role, run.weight));
            painter.setPen(isSecondary ? colors.secondary : colors.primary);
            painter.drawText(QRectF(room.left(), room.top(), std::ceil(drawn) + 1, room.height()),
                             Qt::AlignLeft | Qt::AlignVCenter, text);
            room.setLeft(room.left() + drawn + gap);
            if (room.width() <= 0)
                break;
        }
    }

    QFontMetricsF metrics(const MenuRow::Run& run) const {
        return QFontMetricsF(theme_.font(run.role, run.weight));
    }

    MenuList& list_;
    const Theme& theme_;
    Icons& icons_;
};

MenuList::MenuList(Heights heights, const Theme& theme, Icons& icons, QWidget* parent)
    : QListView(parent), heights_(heights), theme_(theme), model_(new Model(*this)) {
    model_->setParent(this);
    setModel(model_);
    setItemDelegate(new Painter(*this, icons));
    setFocusPolicy(Qt::NoFocus);
    setFrameShape(QFrame::NoFrame);
    setUniformItemSizes(heights == Heights::equal);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    viewport()->setAttribute(Qt::WA_Hover);
    // The toolkit tells of clicks on rows that are off, too.
    connect(this, &QAbstractItemView::clicked, this, [this](const QModelIndex& index) {
        if (isChoosable(index.row()))
            emit itemClicked(index.row());
    });
    connect(&theme, &Theme::changed, viewport(), qOverload<>(&QWidget::update));
}

void MenuList::setRows(int count, std::function<MenuRow(int)> rowAt) {
    model_->replace([&] {
        count_ = count;
        rowAt_ = std::move(rowAt);
    });
}

bool MenuList::isChoosable(int place) const {
    return heights_ == Heights::equal || row(place).kind == MenuRow::Kind::item;
}

void MenuList::choose(int place) {
    setCurrentIndex(model_->index(place, 0));
}

int MenuList::heightOf(int count) const {
    if (heights_ == Heights::equal)
        return count * theme_.px(itemHeight);
    int height = 0;
    for (int place = 0; place < count; ++place)
        height += rowHeight(row(place));
    return height;
}

int MenuList::rowHeight(const MenuRow& row) const {
    const int own = theme_.px(row.kind == MenuRow::Kind::heading ? headingHeight : itemHeight);
    return row.border == MenuRow::Border::above ? own + theme_.px(borderRoom) : own;
}

} // namespace fennik::ui
