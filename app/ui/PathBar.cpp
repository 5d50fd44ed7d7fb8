#include "app/ui/PathBar.h"

#include "app/model/PathCrumbs.h"
#include "app/ui/ActionIcons.h"
#include "app/ui/ArchiveBadge.h"
#include "app/ui/Crumb.h"
#include "app/ui/IconButton.h"
#include "app/ui/PanelWords.h"
#include "app/ui/PathField.h"
#include "app/ui/PlatformWords.h"
#include "app/ui/StyleSheet.h"
#include "app/ui/Suggestions.h"
#include "app/ui/Text.h"
#include "core/listing/PathCompleter.h"

#include <QMenu>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace fennik::ui {

namespace {

using Step = app::PanelHistory::Step;

constexpr int buttonSide = 28;
constexpr int separatorWidth = 15;
constexpr int leastWay = 110;
constexpr int leastCrumb = 44; ///< wide, to be worth reading
constexpr int roomBeforeBadge = 160;

IconButton* actionButton(const UiContext& context, app::KAction action, QWidget* parent) {
    return new IconButton(ActionIcons::iconOf(app::KActions::symbolName(action)),
                          PlatformWords::title(action), {}, context.theme, context.icons, parent);
}

} // namespace

PathBar::PathBar(const UiContext& context, app::PanelModel& panel, QWidget* parent)
    : QWidget(parent),
      context_(context),
      app_(context.app),
      panel_(panel),
      theme_(context.theme),
      icons_(context.icons),
      back_(actionButton(context, app::KAction::back, this)),
      forward_(actionButton(context, app::KAction::forward, this)),
      up_(actionButton(context, app::KAction::parent, this)),
      star_(new IconButton(QStringLiteral("star"), {}, {}, theme_, icons_, this)),
      terminal_(actionButton(context, app::KAction::terminal, this)),
      pathField_(new PathField(PathField::Place::pathBar, theme_, icons_, this)),
      more_(new Crumb(QStringLiteral("…"), theme_, this)),
      badge_(new ArchiveBadge(theme_, icons_, this)) {
    setObjectName(QStringLiteral("pathBar"));
    setFixedHeight(theme_.px(38));
    pathField_->hide();
    badge_->hide();
    terminal_->setAccessibleName(QStringLiteral("Terminál v této složce"));
    more_->setAccessibleName(QStringLiteral("Další složky cesty"));
    const auto onClick = [this](IconButton* button, auto act) {
        connect(button, &QAbstractButton::clicked, this, [this, act] {
            app_.activate(panel_.side());
            act();
        });
    };
    onClick(back_, [this] { app_.perform(app::KAction::back); });
    onClick(forward_, [this] { app_.perform(app::KAction::forward); });
    onClick(up_, [this] { app_.perform(app::KAction::parent); });
    onClick(star_, [this] { app_.toggleFavorite(); });
    onClick(terminal_, [this] { app_.perform(app::KAction::terminal); });
    connect(more_, &QAbstractButton::clicked, this, &PathBar::showHiddenCrumbs);
    connect(&panel_, &app::PanelModel::changed, this, [this](app::PanelChanges changes) {
        if (changes & (app::PanelChange::tabs | app::PanelChange::state))
            takePanel();
        if (changes & (app::PanelChange::visit | app::PanelChange::state))
            followTyped();
    });
    connect(&app_, &app::AppModel::changed, this, [this](app::AppChanges changes) {
        if (changes.testFlag(app::AppChange::places))
            takePlaces();
        if (changes.testFlag(app::AppChange::suggestions) && pathField_->isVisible())
            pathField_->setSuggestions(app_.pathSuggestions().found(), panel_.tab().path);
    });
    connect(&context_.shortcuts, &app::ShortcutStore::changed, this, &PathBar::takeKeys);
    connect(pathField_, &PathField::typed, this, &PathBar::takeTyped);
    connect(pathField_, &PathField::accepted, this, &PathBar::goTo);
    connect(pathField_, &PathField::left, this, &PathBar::closeField);
    takeKeys();
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
    takePanel();
}

void PathBar::setActive(bool isActive) {
    isActive_ = isActive;
    if (!crumbs_.empty())
        crumbs_.back()->setEmphasis(isActive ? QFont::DemiBold : QFont::Medium);
    layOutCrumbs();
    update();
}

void PathBar::takePanel() {
    const auto folder = panel_.folder();
    back_->setEnabled(panel_.canGo(Step::back));
    forward_->setEnabled(panel_.canGo(Step::forward));
    const auto& archive = panel_.archive();
    const auto index = archive ? archive->index : nullptr;
    up_->setEnabled(archive || !folder.isRoot());
    if (shownLocation_ == panel_.location() && shownVolume_ == panel_.volumeRoot() &&
        shownArchive_ == index)
        return;
    shownLocation_ = panel_.location();
    shownVolume_ = panel_.volumeRoot();
    shownArchive_ = index;
    takePlaces();
    addCrumbs();
    setActive(isActive_);
}

void PathBar::addCrumbs() {
    for (auto* crumb : crumbs_) {
        crumb->hide();
        crumb->deleteLater(); // it may be the one that was clicked
    }
    crumbs_.clear();
    targets_.clear();
    const auto way = app::PathCrumbs::of(panel_.folder(), app_.home(), shownVolume_);
    startsAtHome_ = way.start == app::PathCrumbs::Start::home;
    for (const auto& [title, url] : way.crumbs)
        addCrumb(title, {.url = url});
    if (const auto& browse = panel_.archive())
        addArchiveCrumbs(*browse, 0);
}

void PathBar::addArchiveCrumbs(const app::ArchiveBrowse& archive, int archivesToLeave) {
    if (archive.outer != nullptr)
        addArchiveCrumbs(*archive.outer, archivesToLeave + 1);
    const auto add = [&](std::string_view title, std::string_view inner) -> Crumb& {
        return addCrumb(title,
                        {.url = inner.empty() ? archive.place : archive.place.appending(inner),
                         .isInside = true,
                         .archivesToLeave = archivesToLeave,
                         .inner = std::string(inner)});
    };
    add(archive.place.lastComponent(), {}).setIcon(FileLook::archive, icons_);
    const std::string_view inner = archive.inner;
    for (std::size_t begin = 0; begin < inner.size();) {
        const auto end = std::min(inner.find('/', begin), inner.size());
        add(inner.substr(begin, end - begin), inner.substr(0, end));
        begin = end + 1;
    }
}

Crumb& PathBar::addCrumb(std::string_view title, Target target) {
    auto* crumb = new Crumb(shownName(title), theme_, this);
    const auto path = shownName(target.url.path());
    crumb->setToolTip(toolTipText(path));
    crumb->setAccessibleDescription(path); // else the tooltip with its markup
    connect(crumb, &QAbstractButton::clicked, this, [this, target] { open(target); });
    crumb->show();
    crumbs_.push_back(crumb);
    targets_.push_back(std::move(target));
    return *crumb;
}

void PathBar::open(const Target& target) {
    app_.activate(panel_.side());
    if (!target.isInside) {
        panel_.navigate(target.url);
        return;
    }
    panel_.goToInner(target.inner, target.archivesToLeave);
}

void PathBar::takeKeys() {
    const auto keys = context_.keys();
    back_->setToolTip(keys.titleAndKey(app::KAction::back));
    forward_->setToolTip(keys.titleAndKey(app::KAction::forward));
    up_->setToolTip(keys.titleAndKey(app::KAction::parent));
    const auto key = keys.of(app::KAction::terminal);
    terminal_->setToolTip(QStringLiteral("Terminál v této složce (%1)").arg(key));
    takePlaces();
}

void PathBar::takePlaces() {
    const bool isFavorite = app_.places().isFavorite(panel_.tab().path);
    star_->setFilled(isFavorite);
    const auto title = isFavorite ? QStringLiteral("Odebrat složku z oblíbených")
                                  : context_.keys().titleAndKey(app::KAction::addFavorite);
    star_->setToolTip(title);
    star_->setAccessibleName(isFavorite ? title : PlatformWords::title(app::KAction::addFavorite));
}

std::optional<PathBar::CrumbPlace> PathBar::crumbAt(const QPoint& point) const {
    for (std::size_t i = 0; i < crumbs_.size() && !pathField_->isVisible(); ++i) {
        if (crumbs_[i]->isHidden() || !crumbs_[i]->geometry().contains(point))
            continue;
        const auto& target = targets_[i];
        return CrumbPlace{int(i), target.isInside ? std::nullopt : std::optional(target.url)};
    }
    return std::nullopt;
}

void PathBar::setDropCrumb(int crumb) {
    for (std::size_t i = 0; i < crumbs_.size(); ++i)
        crumbs_[i]->setDropTarget(int(i) == crumb);
}

void PathBar::openField() {
    if (pathField_->isVisible()) {
        pathField_->setFocus();
        pathField_->selectAll();
        return;
    }
    pathField_->setGeometry(field());
    pathField_->show();
    pathField_->raise();
    pathField_->open(panel_.tab().path);
}

void PathBar::closeField() {
    app_.pathSuggestions().clear();
    if (panel_.loading() && panel_.loadToken() == typedLoad_)
        panel_.escape();
    pathField_->hide();
    emit fieldClosed();
}

void PathBar::takeTyped(const QString& text) {
    askForSuggestions(app_, text, panel_.folder());
}

void PathBar::goTo(const QString& text) {
    const auto path = PathCompleter::normalise(text.toStdString(), panel_.folder(), app_.home());
    if (!path.starts_with('/') || path.find('\0') != std::string::npos) {
        pathField_->showError(QStringLiteral("Tohle není cesta ke složce."));
        return;
    }
    panel_.tryNavigate(FileUrl(path).standardized());
    typedLoad_ = panel_.loadToken();
}

void PathBar::followTyped() {
    if (!pathField_->isVisible() || panel_.loading() || panel_.loadToken() != typedLoad_)
        return;
    typedLoad_ = -1;
    if (const auto& failure = panel_.typedFailure())
        pathField_->showError(PlatformWords::failureMessage(*failure));
    else
        closeField();
}

void PathBar::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && field().contains(event->pos()))
        app_.requestPathField(panel_.side());
    else
        event->ignore();
}

QRect PathBar::field() const {
    const auto roomOf = [](std::initializer_list<const QWidget*> buttons) {
        const auto shown = std::ranges::count_if(
            buttons, [](const QWidget* button) { return !button->isHidden(); });
        return int(shown) * buttonSide;
    };
    const int left = theme_.px(18 + roomOf({back_, forward_, up_}));
    const int boxHeight = theme_.px(28);
    const int right = width() - theme_.px(14 + roomOf({star_, terminal_}));
    return {left, (height() - boxHeight) / 2, right - left, boxHeight};
}

void PathBar::hideButtonsWithoutRoom() {
    // Keys do the same; the way is only told here.
    for (auto* button : {star_, terminal_, back_, forward_})
        button->show();
    for (const auto& [first, second] : {std::pair(star_, terminal_), std::pair(back_, forward_)}) {
        const bool hasRoom = field().width() >= theme_.px(leastWay);
        first->setVisible(hasRoom);
        second->setVisible(hasRoom);
    }
}

void PathBar::resizeEvent(QResizeEvent*) {
    hideButtonsWithoutRoom();
    const int side = theme_.px(buttonSide);
    const int top = (height() - side) / 2;
    int left = theme_.px(7);
    for (auto* button : {back_, forward_, up_}) {
        if (button->isHidden())
            continue;
        button->setGeometry(left, top, side, side);
        left += side + theme_.px(1);
    }
    left = width() - theme_.px(7) - 2 * side - theme_.px(1);
    for (auto* button : {star_, terminal_}) {
        button->setGeometry(left, top, side, side);
        left += side + theme_.px(1);
    }
    pathField_->setGeometry(field());
    layOutCrumbs();
}

void PathBar::layOutCrumbs() {
    auto room = field().adjusted(theme_.px(28), 0, -theme_.px(6), 0);
    layOutBadge(room);
    const int gap = theme_.px(separatorWidth);
    const int count = static_cast<int>(crumbs_.size());
    const auto widthOf = [this](int crumb) {
        return crumbs_[static_cast<std::size_t>(crumb)]->sizeHint().width();
    };
    int total = -gap;
    for (int crumb = 0; crumb < count; ++crumb)
        total += widthOf(crumb) + gap;

    // Those between the first and the last one give way to "…", then the first one shrinks, then it
    // gives way too. The last one, where the panel is, stays. On the way into an archive the first
    // ones give way first, so that the archive is still named.
    int firstHidden = shownArchive_ == nullptr ? 1 : 0;
    int hidden = 0;
    const auto hide = [&](int crumb) {
        total -= widthOf(crumb) + gap;
        total += hidden++ == 0 ? more_->sizeHint().width() + gap : 0;
    };
    while (hidden < count - 1 - firstHidden && total > room.width())
        hide(firstHidden + hidden);
    const int shrinksBy = count > 1 && firstHidden == 1 ? std::max(0, total - room.width()) : 0;
    const int firstWidth = count > 0 ? widthOf(0) - shrinksBy : 0;
    const bool firstGives = shrinksBy > 0 && firstWidth < theme_.px(leastCrumb);
    if (firstGives) {
        hide(0);
        firstHidden = 0;
    }

    more_->setVisible(hidden > 0);
    separators_.clear();
    int left = room.left();
    const auto place = [&](Crumb* crumb, int wanted) {
        if (left > room.left()) {
            separators_.emplace_back(left + gap / 2, room.center().y());
            left += gap;
        }
        const int width = std::min(wanted, std::max(0, room.right() - left));
        crumb->setGeometry(left, room.top(), width, room.height());
        left += width;
    };
    for (int i = 0; i < count; ++i) {
        auto* crumb = crumbs_[static_cast<std::size_t>(i)];
        const bool isHidden = i >= firstHidden && i < firstHidden + hidden;
        crumb->setVisible(!isHidden);
        if (isHidden && i == firstHidden)
            place(more_, more_->sizeHint().width());
        if (!isHidden)
            place(crumb, i == 0 && count > 1 ? firstWidth : widthOf(i));
    }
    update();
}

void PathBar::layOutBadge(QRect& room) {
    badge_->setVisible(shownArchive_ != nullptr);
    if (badge_->isHidden())
        return;
    // The way comes first: in a narrow panel only the format is left, or nothing.
    const int shortestWay =
        crumbs_.back()->sizeHint().width() + more_->sizeHint().width() + theme_.px(separatorWidth);
    const auto whole = archiveBadge(*shownArchive_);
    badge_->setAccessibleName(whole);
    badge_->setToolTip(whole);
    const int margin = theme_.px(2);
    const int gap = theme_.px(6);
    const auto spare = [&] { return room.width() - margin - badge_->sizeHint().width() - gap; };
    badge_->setText(whole);
    if (spare() < std::max(shortestWay, theme_.px(roomBeforeBadge)))
        badge_->setText(fromUtf8(shownArchive_->formatLabel()));
    if (spare() < shortestWay) {
        badge_->hide();
        return;
    }
    const auto size = badge_->sizeHint();
    badge_->setGeometry(room.right() - margin - size.width(),
                        room.center().y() - size.height() / 2 + 1, size.width(), size.height());
    room.setRight(badge_->x() - gap);
}

void PathBar::showHiddenCrumbs() {
    QMenu menu(this);
    menu.setAccessibleName(more_->accessibleName());
    wear(menu, theme_, StyleSheet::menus);
    for (auto* crumb : crumbs_) {
        if (crumb->isHidden())
            menu.addAction(menuText(crumb->title()), crumb, &QAbstractButton::click);
    }
    emit menuOpened(true);
    menu.exec(more_->mapToGlobal(QPoint(0, more_->height())));
    emit menuOpened(false);
}

void PathBar::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto box = field();
    if (pathField_->isVisible())
        return;
    if (isActive_) {
        painter.setPen(tokens.line);
        painter.setBrush(tokens.field);
        painter.drawRoundedRect(QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5), 7, 7);
    }
    const int side = theme_.px(16);
    const double ratio = devicePixelRatioF();
    const auto start =
        icons_.line(startsAtHome_ ? QStringLiteral("house") : QStringLiteral("hard-drive"), side,
                    isActive_ ? tokens.accentText : tokens.text2, ratio);
    painter.drawPixmap(box.left() + theme_.px(8), box.center().y() - side / 2 + 1, start);
    const int chevron = theme_.px(13);
    const auto separator =
        icons_.line(QStringLiteral("chevron-right"), chevron, tokens.text3, ratio);
    for (const auto& middle : separators_)
        painter.drawPixmap(middle.x() - chevron / 2, middle.y() - chevron / 2 + 1, separator);
}

} // namespace fennik::ui
