#include "app/ui/StatusLine.h"

#include "app/ui/MarksChip.h"
#include "app/ui/PanelWords.h"
#include "app/ui/RunLabel.h"
#include "app/ui/Text.h"
#include "core/listing/Format.h"

#include <QHBoxLayout>
#include <QPainter>

#include <utility>

namespace fennik::ui {

namespace {

constexpr double sideMargin = 9;
constexpr double iconRoom = 20;

} // namespace

std::int64_t shownItemCount(const app::PanelModel& panel) {
    const auto& items = panel.items();
    const bool hasParent = !items.empty() && items.view(0).isParentLink;
    return static_cast<std::int64_t>(items.size()) - (hasParent ? 1 : 0);
}

StatusLine::StatusLine(app::PanelModel& panel, const Theme& theme, Icons& icons, QWidget* parent)
    : QWidget(parent),
      panel_(panel),
      theme_(theme),
      icons_(icons),
      marks_(new MarksChip(theme, this)),
      summary_(new RunLabel(theme, Qt::AlignLeft, this)),
      details_(new RunLabel(theme, Qt::AlignLeft, this)),
      space_(new RunLabel(theme, Qt::AlignRight, this)) {
    setObjectName(QStringLiteral("statusLine"));
    setFixedHeight(theme.px(27));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(theme.px(sideMargin), 0, theme.px(11), 0);
    layout->setSpacing(theme.px(20));
    layout->addWidget(marks_);
    layout->addWidget(summary_);
    layout->addWidget(details_, 1);
    layout->addWidget(space_);
    connect(&panel_, &app::PanelModel::changed, this, &StatusLine::takePanel);
    connect(&theme_, &Theme::changed, this, &StatusLine::takePanel);
    takePanel();
}

void StatusLine::setLoadingStage(LoadingStage stage) {
    stage_ = stage;
    makeRoomForIcon();
    takePanel();
}

void StatusLine::setBusy(const QString& text) {
    if (std::exchange(busy_, text) == text)
        return;
    makeRoomForIcon();
    takePanel();
}

bool StatusLine::isAtWork() const {
    return stage_ != LoadingStage::none || !busy_.isEmpty();
}

void StatusLine::makeRoomForIcon() {
    // It stands before the words.
    auto margins = layout()->contentsMargins();
    margins.setLeft(theme_.px(isAtWork() ? sideMargin + iconRoom : sideMargin));
    layout()->setContentsMargins(margins);
}

void StatusLine::setSearch(const QString& text) {
    search_ = text;
    takePanel();
}

void StatusLine::setHint(const QString& hint) {
    hint_ = hint;
    takePanel();
}

void StatusLine::takePanel() {
    const auto& tokens = theme_.tokens();
    marks_->show(marksText());
    summary_->setRuns({{summary(), tokens.text2}});
    details_->setRuns({{details(), tokens.text2}});
    showSpace();
    update();
}

void StatusLine::showSpace() {
    const auto& tokens = theme_.tokens();
    if (panel_.archive()) {
        space_->setRuns({{contentInWords(*panel_.archive()->index), tokens.text2}});
        return;
    }
    const auto free = panel_.error() ? std::nullopt : panel_.freeSpace();
    const auto amount = free ? fromUtf8(Format::bytes(*free)) : QStringLiteral("–");
    space_->setRuns(
        {{QStringLiteral("Volno "), tokens.text2}, {amount, tokens.text, QFont::Medium}});
    if (!hasRoomFor(space_->sizeHint().width()))
        space_->setRuns({});
}

bool StatusLine::hasRoomFor(int width) const {
    const QWidget& first = marks_->isHidden() ? static_cast<QWidget&>(*summary_) : *marks_;
    const auto margins = layout()->contentsMargins();
    return first.sizeHint().width() + layout()->spacing() + width <=
           this->width() - margins.left() - margins.right();
}

void StatusLine::resizeEvent(QResizeEvent*) {
    showSpace();
}

QString StatusLine::summary() const {
    using Case = FolderOpener::Failure::Case;
    if (!busy_.isEmpty())
        return busy_;
    if (!hint_.isEmpty())
        return hint_;
    if (stage_ != LoadingStage::none && panel_.isOpeningArchive())
        return QStringLiteral("Čtu archiv…");
    if (stage_ == LoadingStage::noAnswer)
        return QStringLiteral("Složka neodpovídá – Esc ji opustí");
    if (stage_ != LoadingStage::none)
        return QStringLiteral("Načítám…");
    if (const auto& error = panel_.error())
        return error->kind == Case::noPermission ? QStringLiteral("Bez přístupu")
                                                 : QStringLiteral("Nedostupná");
    if (!search_.isEmpty())
        return QStringLiteral("Hledám: ") + shownName(search_.toStdString());
    if (panel_.items().empty() || !marksText().isEmpty())
        return {};
    return itemCount(shownItemCount(panel_));
}

QString StatusLine::marksText() const {
    const auto& totals = panel_.markTotals();
    const bool isSaidOtherwise = !search_.isEmpty() || !hint_.isEmpty();
    if (totals.count == 0 || panel_.error() || isAtWork() || isSaidOtherwise)
        return {};
    auto text = QStringLiteral("Označeno %1 z %2 · %3")
                    .arg(fromUtf8(Format::grouped(totals.count)),
                         fromUtf8(Format::grouped(shownItemCount(panel_))),
                         fromUtf8(Format::bytes(totals.bytes)));
    if (totals.hasUnsizedFolders())
        text += QStringLiteral(" + složky");
    return text;
}

QString StatusLine::details() const {
    if (panel_.error() || isAtWork() || !hint_.isEmpty())
        return {};
    if (panel_.cursor() >= panel_.items().size())
        return {};
    const auto item = panel_.items().view(panel_.cursor());
    if (item.isParentLink)
        return {};
    QStringList parts;
    if (const auto* target = panel_.linkTarget(std::string(item.name)))
        parts << QStringLiteral("→ ") + shownName(target->path);
    const auto folderSize = panel_.folderSizes().find(item.name);
    if (!item.isFolderLike() && !isSizeUnknown(panel_, item))
        parts << fromUtf8(Format::grouped(item.size)) + QStringLiteral(" B");
    else if (folderSize != panel_.folderSizes().end())
        parts << fromUtf8(Format::grouped(folderSize->second)) + QStringLiteral(" B");
    if (const auto date = czechDate(item.modified, DateDetail::seconds); !date.isEmpty())
        parts << date;
    return parts.join(QStringLiteral(" · "));
}

void StatusLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (isAtWork()) {
        const int side = theme_.px(14);
        painter.drawPixmap(theme_.px(sideMargin), (height() - side) / 2,
                           icons_.line(QStringLiteral("loader-circle"), side, theme_.tokens().text2,
                                       devicePixelRatioF()));
    }
    if (details_->text().isEmpty())
        return;
    const int x = details_->x() - theme_.px(10);
    const int inset = theme_.px(7);
    painter.fillRect(x, inset, 1, height() - 2 * inset, theme_.tokens().line);
}

} // namespace fennik::ui
