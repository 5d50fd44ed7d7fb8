#include "app/ui/PanelView.h"

#include "app/ui/ActionMenu.h"
#include "app/ui/FileDrag.h"
#include "app/ui/LoadingView.h"
#include "app/ui/PanelDrops.h"
#include "app/ui/PanelHeader.h"
#include "app/ui/PanelMessage.h"
#include "app/ui/PanelWords.h"
#include "app/ui/PathBar.h"
#include "app/ui/PlatformWords.h"
#include "app/ui/RenameField.h"
#include "app/ui/StyleSheet.h"
#include "app/ui/TabStrip.h"
#include "app/ui/Text.h"

#include <QDrag>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QPainterPath>
#include <QTimer>
#include <QVBoxLayout>

#include <chrono>
#include <utility>

namespace fennik::ui {

namespace {

constexpr int frameWidth = 2;
constexpr double radius = 9;

/// How long a load goes on before the stage is reached.
std::chrono::milliseconds delayOf(LoadingStage stage) {
    using namespace std::chrono_literals;
    switch (stage) {
    case LoadingStage::none:
        return 0ms;
    case LoadingStage::noticeable:
        return 150ms;
    case LoadingStage::rowless:
        return 600ms;
    case LoadingStage::noAnswer:
        break;
    }
    return 5s;
}

LoadingStage next(LoadingStage stage) {
    return static_cast<LoadingStage>(int(stage) + 1);
}

} // namespace

PanelView::PanelView(const UiContext& context, app::PanelSide side, QWidget* parent)
    : QWidget(parent),
      context_(context),
      panel_(context.app.panel(side)),
      theme_(context.theme),
      tabStrip_(new TabStrip(context.theme, context.icons, this)),
      pathBar_(new PathBar(context, panel_, this)),
      table_(new PanelTable(panel_, context.theme, context.icons, this)),
      statusLine_(new StatusLine(panel_, context.theme, context.icons, this)),
      rename_(new RenameField(*table_, context.theme, context.icons)),
      message_(new PanelMessage(context, panel_, this)),
      drops_(new PanelDrops(context, panel_, *table_, *message_, *pathBar_, *tabStrip_)),
      stripe_(new LoadingStripe(context.theme, this)),
      skeleton_(new LoadingSkeleton(context.theme, this)),
      stageTimer_(new QTimer(this)) {
    setObjectName(side == app::PanelSide::left ? QStringLiteral("leftPanel")
                                               : QStringLiteral("rightPanel"));
    setMinimumWidth(300); // whatever the size of the text: the window may be that narrow
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(frameWidth, frameWidth, frameWidth, frameWidth);
    layout->setSpacing(1);
    layout->addWidget(tabStrip_);
    layout->addWidget(pathBar_);
    layout->addWidget(table_, 1);
    layout->addWidget(statusLine_);
    stageTimer_->setSingleShot(true);

    connect(stageTimer_, &QTimer::timeout, this, [this] { setLoadingStage(next(stage_)); });
    connect(&panel_, &app::PanelModel::changed, this, &PanelView::takePanel);
    connect(&theme_, &Theme::changed, this, [this] {
        message_->takePanel();
        setFocusLook(look_);
    });
    connect(message_, &PanelMessage::answered, table_, qOverload<>(&QWidget::setFocus));
    connect(table_, &PanelTable::menuOpened, this, &PanelView::menuOpened);
    connect(table_, &PanelTable::menuRequested, this, &PanelView::showMenu);
    connect(table_, &PanelTable::searchChanged, statusLine_, &StatusLine::setSearch);
    connect(table_, &PanelTable::dragStarted, this, &PanelView::drag);
    connect(drops_, &PanelDrops::changed, this, [this](const QString& text) {
        statusLine_->setHint(text);
        update();
    });
    connect(drops_, &PanelDrops::dropped, this,
            [this](TransferKind kind, const std::vector<FileUrl>& files, const FileUrl& folder) {
                context_.app.receiveDrop(kind, files, folder);
            });
    connect(pathBar_, &PathBar::menuOpened, this, &PanelView::menuOpened);
    connect(tabStrip_, &TabStrip::selected, this, [this](int index) {
        context_.app.activate(panel_.side());
        panel_.selectTab(static_cast<std::size_t>(index));
    });
    connect(tabStrip_, &TabStrip::closeRequested, this,
            [this](int index) { panel_.closeTab(static_cast<std::size_t>(index)); });
    connect(tabStrip_, &TabStrip::newTabRequested, this, [this] {
        context_.app.activate(panel_.side());
        context_.app.perform(app::KAction::newTab);
    });
    connect(tabStrip_, &TabStrip::moved, this, [this](int from, int to) {
        panel_.moveTab(static_cast<std::size_t>(from), static_cast<std::size_t>(to));
    });
    connect(&context_.app, &app::AppModel::changed, this, [this](app::AppChanges changes) {
        if (changes.testFlag(app::AppChange::request))
            takeRename();
        if (changes & (app::AppChange::busy | app::AppChange::activeSide))
            takeBusy();
    });
    connect(rename_, &RenameField::committed, &context_.app, &app::AppModel::commitRename);
    connect(rename_, &RenameField::nextWanted, &context_.app, &app::AppModel::renameNext);
    connect(rename_, &RenameField::left, this, [this] {
        if (!context_.app.dialog()) // a dialog gives the keyboard back
            context_.app.cancelRename();
    });
    tabStrip_->hide();
    takeTabs();
    nameTable();
}

void PanelView::takeFocus() {
    if (rename_->isVisible())
        rename_->setFocus();
    else
        table_->setFocus();
}

void PanelView::takeRename() {
    const auto& request = context_.app.renameRequest();
    if (!request || request->side != panel_.side()) {
        rename_->close();
        statusLine_->setHint({});
        return;
    }
    if (std::exchange(seenRename_, request->token) != request->token) {
        rename_->open(request->name);
        statusLine_->setHint(
            context_.keys().sentence("Enter přejmenuje · Esc nechá původní · ⇥ další položka"));
    }
    if (!request->failure.empty())
        rename_->showError(fromUtf8(request->failure));
}

void PanelView::takeBusy() {
    const bool isActive = context_.app.activeSide() == panel_.side();
    statusLine_->setBusy(isActive ? fromUtf8(context_.app.busyText()) : QString());
}

void PanelView::showMenu(const QPoint& corner) {
    QMenu menu(this);
    menu.setAccessibleName(QStringLiteral("Nabídka položky"));
    wear(menu, theme_, StyleSheet::menus);
    fillMenu(menu, context_, app::FennikCommands::contextMenu());
    emit menuOpened(true);
    menu.exec(corner);
    emit menuOpened(false);
}

void PanelView::drag(const std::vector<FileUrl>& items, FileLook look) {
    auto* drag = new QDrag(table_);
    drag->setMimeData(FileDrag::data(items).release());
    drag->setPixmap(FileDrag::picture(items, look, theme_, context_.icons, devicePixelRatioF()));
    drag->setHotSpot(QPoint(-theme_.px(14), -theme_.px(18)));
    drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::CopyAction);
}

void PanelView::setTabsShown(bool areShown) {
    tabStrip_->setVisible(areShown);
}

void PanelView::takeTabs() {
    std::vector<TabStrip::Tab> tabs;
    for (std::size_t i = 0; i < panel_.tabs().size(); ++i) {
        const auto* archive = panel_.archiveOfTab(i);
        const FileUrl folder(panel_.tabs()[i].path, FileUrl::Form::directory);
        const auto place = archive != nullptr ? archive->place : folder;
        tabs.push_back({shownName(place.lastComponent()), shownName(place.path())});
    }
    tabStrip_->setTabs(tabs, static_cast<int>(panel_.activeTab()));
}

void PanelView::setFocusLook(FocusLook look) {
    look_ = look;
    pathBar_->setActive(look != FocusLook::idle);
    tabStrip_->setActivePanel(look != FocusLook::idle);
    table_->setFocusLook(look);
    message_->setGround(rowGround());
    update();
}

QColor PanelView::rowGround() const {
    return look_ == FocusLook::idle ? theme_.tokens().panelInactive : theme_.tokens().panel;
}

void PanelView::takePanel(app::PanelChanges changes) {
    const std::pair load{panel_.loadToken(), panel_.loading()};
    if (std::exchange(shownLoad_, load) != load)
        setLoadingStage(LoadingStage::none);
    holdPicture();
    if (changes & (app::PanelChange::tabs | app::PanelChange::items))
        takeTabs();
    if (changes & (app::PanelChange::items | app::PanelChange::state)) {
        message_->takePanel();
        placeOverlays();
        nameTable();
    }
}

void PanelView::holdPicture() {
    // Another tab's rows are there in a moment; a blank in between would only flicker.
    const bool isBetweenTabs = panel_.loading() && panel_.items().empty() && !panel_.error() &&
                               panel_.generation() > 0 && stage_ == LoadingStage::none;
    for (QWidget* part : {static_cast<QWidget*>(table_), static_cast<QWidget*>(statusLine_)})
        part->setUpdatesEnabled(!isBetweenTabs);
}

void PanelView::setLoadingStage(LoadingStage stage) {
    stage_ = stage;
    holdPicture();
    stripe_->setVisible(stage != LoadingStage::none);
    const bool hasNothing = panel_.items().empty() && !panel_.error();
    skeleton_->setVisible(stage >= LoadingStage::rowless && hasNothing);
    statusLine_->setLoadingStage(stage);
    if (panel_.loading() && stage != LoadingStage::noAnswer)
        stageTimer_->start(delayOf(next(stage)) - delayOf(stage));
    else
        stageTimer_->stop();
}

void PanelView::resizeEvent(QResizeEvent*) {
    placeOverlays();
}

void PanelView::mousePressEvent(QMouseEvent*) {
    table_->setFocus();
}

void PanelView::placeOverlays() {
    const auto rows = table_->geometry();
    const int header = table_->horizontalHeader()->height();
    const bool isEmptyFolder = message_->content() == PanelMessage::Content::emptyFolder;
    message_->setGeometry(rows.adjusted(0, isEmptyFolder ? table_->rowsBottom() : 0, 0, 0));
    skeleton_->setGeometry(rows.adjusted(0, header, 0, 0));
    stripe_->setGeometry(rows.left(), rows.top() - 2, rows.width(), 2);
}

void PanelView::nameTable() {
    const auto side = panel_.side() == app::PanelSide::left ? QStringLiteral("Levý panel")
                                                            : QStringLiteral("Pravý panel");
    auto name = QStringLiteral("%1, %2").arg(side, spokenPlace(panel_));
    // While nothing is known of the rows there is no count, and a failure has a sentence to say.
    const auto& error = panel_.error();
    if (!error && panel_.generation() > 0)
        name += QStringLiteral(", ") + itemCount(shownItemCount(panel_));
    table_->setAccessibleName(name);
    table_->setAccessibleDescription(error ? PlatformWords::failureMessage(*error) : QString());
}

void PanelView::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF all(rect());
    QPainterPath card;
    card.addRoundedRect(all, radius, radius);
    painter.setClipPath(card);
    painter.fillRect(all, tokens.chrome);
    if (!tabStrip_->isHidden())
        painter.fillRect(QRectF(0, 0, width(), tabStrip_->geometry().bottom() + 1), tokens.window);
    painter.fillRect(QRectF(table_->geometry()), rowGround());
    painter.fillRect(QRectF(0, table_->y() - 1, width(), 1), tokens.line);
    painter.fillRect(QRectF(0, statusLine_->y() - 1, width(), 1), tokens.line);
    painter.setClipping(false);

    constexpr double dropWidth = 1.5;
    const bool isTarget = drops_->isTarget();
    const double width = isTarget ? dropWidth : look_ == FocusLook::keyboard ? frameWidth : 1;
    const bool isPlain = look_ == FocusLook::idle && !isTarget;
    painter.setPen(QPen(isPlain ? tokens.line : tokens.accent, width,
                        isTarget ? Qt::DashLine : Qt::SolidLine));
    painter.setBrush(Qt::NoBrush);
    const double half = width / 2;
    painter.drawRoundedRect(all.adjusted(half, half, -half, -half), radius - half, radius - half);
}

} // namespace fennik::ui
