#include "app/ui/dialogs/ConflictSide.h"

#include "app/ui/AccessibleRole.h"
#include "app/ui/Text.h"
#include "app/ui/dialogs/ElidedLabel.h"
#include "app/ui/dialogs/LabelColor.h"
#include "core/listing/Format.h"

#include <QGridLayout>
#include <QPainter>
#include <QPainterPath>

namespace fennik::ui {

namespace {

constexpr double headerHeight = 31;
constexpr double sideMargin = 13;
constexpr double iconSide = 32;

/// The last two folders of the way to an item.
QString shownFolder(const FileUrl& url) {
    const auto folder = url.parent();
    const auto name = shownName(folder.lastComponent());
    const auto above = folder.parent();
    return above.isRoot() ? name : shownName(above.lastComponent()) + QStringLiteral(" › ") + name;
}

QString tagText(Comparison comparison, const QString& more) {
    switch (comparison) {
    case Comparison::none:
        return {};
    case Comparison::more:
        return more;
    case Comparison::same:
        break;
    }
    return QStringLiteral("stejné");
}

} // namespace

/// A word on a small coloured ground. Takes no room while there is none.
class ConflictSide::Tag final : public QLabel {
public:
    Tag(const Theme& theme, QWidget* parent) : QLabel(parent), theme_(theme) {
        setFont(theme.font(FontRole::small, QFont::DemiBold));
        setContentsMargins(theme.px(6), theme.px(1), theme.px(6), theme.px(1));
    }

    void setWord(Comparison comparison, const QString& more) {
        isMore_ = comparison == Comparison::more;
        setText(tagText(comparison, more));
        setHidden(text().isEmpty());
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        const auto& tokens = theme_.tokens();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(isMore_ ? tokens.okSoft : tokens.pressed);
        painter.drawRoundedRect(rect(), 4, 4);
        painter.setPen(isMore_ ? tokens.ok : tokens.text2);
        painter.drawText(rect(), Qt::AlignCenter, text());
    }

private:
    const Theme& theme_;
    bool isMore_ = false;
};

ConflictSide::ConflictSide(const QString& heading, const Theme& theme, Icons& icons,
                           QWidget* parent)
    : QWidget(parent),
      heading_(heading),
      theme_(theme),
      icons_(icons),
      name_(new ElidedLabel({}, this)),
      folder_(new ElidedLabel({}, this)),
      size_(new RunLabel(theme, Qt::AlignLeft, this)),
      date_(new RunLabel(theme, Qt::AlignLeft, this)),
      sizeTag_(new Tag(theme, this)),
      dateTag_(new Tag(theme, this)) {
    setAccessibleRole(*this, QAccessible::Grouping);
    name_->setObjectName(QStringLiteral("conflictName"));
    folder_->setObjectName(QStringLiteral("conflictFolder"));
    sizeTag_->setObjectName(QStringLiteral("sizeTag"));
    dateTag_->setObjectName(QStringLiteral("dateTag"));
    name_->setFont(theme.font(FontRole::body, QFont::DemiBold));
    folder_->setFont(theme.font(FontRole::detail));
    followColor(*name_, theme, &Tokens::text);
    followColor(*folder_, theme, &Tokens::text2);

    const int side = theme.px(sideMargin);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(side, theme.px(headerHeight + 13), side, theme.px(11));
    column->setSpacing(theme.px(11));
    auto* names = new QVBoxLayout;
    names->setContentsMargins(theme.px(iconSide + 13), 0, 0, 0);
    names->setSpacing(0);
    names->addWidget(name_);
    names->addWidget(folder_);
    column->addLayout(names);
    auto* details = new QGridLayout;
    details->setHorizontalSpacing(theme.px(8));
    details->setVerticalSpacing(theme.px(4));
    details->setColumnMinimumWidth(0, theme.px(60));
    details->setColumnStretch(1, 1);
    const auto addRow = [&](int row, const QString& title, RunLabel* value, Tag* tag) {
        auto* label = new QLabel(title, this);
        label->setFont(theme.font(FontRole::detail));
        followColor(*label, theme, &Tokens::text2);
        details->setRowMinimumHeight(row, theme.px(19));
        details->addWidget(label, row, 0);
        details->addWidget(value, row, 1);
        details->addWidget(tag, row, 2, Qt::AlignRight | Qt::AlignVCenter);
    };
    addRow(0, QStringLiteral("Velikost"), size_, sizeTag_);
    addRow(1, QStringLiteral("Změněno"), date_, dateTag_);
    column->addLayout(details);
    connect(&theme, &Theme::changed, this, &ConflictSide::takeItem);
}

void ConflictSide::setItem(const Item& item) {
    item_ = item;
    takeItem();
}

void ConflictSide::takeItem() {
    const auto& tokens = theme_.tokens();
    const bool isFolder = item_.kind == FileKind::directory;
    const auto size = fromUtf8(Format::bytes(item_.size));
    const auto exact = QStringLiteral("%1 B").arg(fromUtf8(Format::grouped(item_.size)));
    const auto date = czechDate(item_.date, DateDetail::seconds);
    const auto noDate = QStringLiteral("–");
    name_->setText(shownName(item_.url.lastComponent()));
    folder_->setText(shownFolder(item_.url));
    if (isFolder)
        size_->setRuns({{QStringLiteral("složka"), tokens.text2}});
    else if (size == exact)
        size_->setRuns({{exact, tokens.text, QFont::Medium}});
    else
        size_->setRuns({{size, tokens.text, QFont::Medium},
                        {QStringLiteral(" (%1)").arg(exact), tokens.text2}});
    date_->setRuns({{date.isEmpty() ? noDate : date, tokens.text, QFont::Medium}});
    sizeTag_->setWord(item_.bySize, QStringLiteral("větší"));
    dateTag_->setWord(item_.byDate, QStringLiteral("novější"));

    QStringList spoken{heading_, name_->text(), shownName(item_.url.parent().path()),
                       isFolder ? QStringLiteral("složka") : exact};
    spoken << sizeTag_->text() << QStringLiteral("změněno ") + date_->text() << dateTag_->text();
    spoken.removeAll(QString());
    setAccessibleName(spoken.join(QStringLiteral(", ")));
    update();
}

void ConflictSide::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outline;
    outline.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 7, 7);
    const int side = theme_.px(sideMargin);
    const QRect header(0, 0, width(), theme_.px(headerHeight));
    painter.setClipRect(header);
    painter.fillPath(outline, tokens.chrome);
    painter.fillRect(0, header.bottom(), width(), 1, tokens.line);
    painter.setClipping(false);
    painter.strokePath(outline, tokens.line);
    painter.setFont(theme_.font(FontRole::detail, QFont::DemiBold));
    painter.setPen(tokens.text2);
    painter.drawText(header.adjusted(side, 0, -side, 0), Qt::AlignLeft | Qt::AlignVCenter,
                     heading_);

    const auto name = item_.url.lastComponent();
    const int icon = theme_.px(iconSide);
    const auto look = lookOf({.name = name, .kind = item_.kind});
    painter.drawPixmap(
        side - 1, theme_.px(headerHeight + 13),
        icons_.file(look, IconBadge::none, IconGround::panel, icon, devicePixelRatioF()));
}

} // namespace fennik::ui
