#include "app/ui/PathBar.h"

#include "app/model/PathCrumbs.h"
#include "app/ui/Crumb.h"
#include "app/ui/IconButton.h"
#include "app/ui/KeyCaps.h"
#include "app/ui/Text.h"

#include <QMenu>
#include <QPainter>

namespace fennik::ui {

namespace {

using Step = app::PanelHistory::Step;

constexpr int buttonSide = 28;
constexpr int separatorWidth = 15;

} // namespace

PathBar::PathBar(app::AppModel& app, app::PanelModel& panel, const Theme& theme, Icons& icons,
                 QWidget* parent)
    : QWidget(parent),
      app_(app),
      panel_(panel),
      theme_(theme),
      icons_(icons),
      back_(new IconButton(QStringLiteral("chevron-left"), QStringLiteral("Zpět"), KeyCaps::back,
                           theme, icons, this)),
      forward_(new IconButton(QStringLiteral("chevron-right"), QStringLiteral("Vpřed"),
                              KeyCaps::forward, theme, icons, this)),
      up_(new IconButton(QStringLiteral("corner-left-up"), QStringLiteral("O úroveň výš"),
                         KeyCaps::backspace, theme, icons, this)),
      more_(new Crumb(QStringLiteral("…"), theme, this)) {
    setObjectName(QStringLiteral("pathBar"));
    setFixedHeight(theme.px(38));
    more_->setAccessibleName(QStringLiteral("Další složky cesty"));
    connect(back_, &QAbstractButton::clicked, &panel_, &app::PanelModel::goBack);
    connect(forward_, &QAbstractButton::clicked, &panel_, &app::PanelModel::goForward);
    connect(up_, &QAbstractButton::clicked, &panel_, &app::PanelModel::goToParent);
    connect(more_, &QAbstractButton::clicked, this, &PathBar::showHiddenCrumbs);
    connect(&panel_, &app::PanelModel::changed, this, [this](app::PanelChanges changes) {
        if (changes & (app::PanelChange::tabs | app::PanelChange::state))
            takePanel();
    });
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
    up_->setEnabled(!folder.isRoot());
    if (shownPath_ == folder.path() && shownVolume_ == panel_.volumeRoot())
        return;
    shownPath_ = folder.path();
    shownVolume_ = panel_.volumeRoot();
    for (auto* crumb : crumbs_)
        crumb->deleteLater();
    crumbs_.clear();
    const auto way = app::PathCrumbs::of(folder, app_.home(), shownVolume_);
    startsAtHome_ = way.start == app::PathCrumbs::Start::home;
    for (const auto& [title, url] : way.crumbs) {
        auto* crumb = new Crumb(shownName(title), theme_, this);
        crumb->setToolTip(toolTipText(shownName(url.path())));
        crumb->setAccessibleDescription(shownName(url.path())); // else the tooltip with its markup
        connect(crumb, &QAbstractButton::clicked, &panel_,
                [this, target = url] { panel_.navigate(target); });
        crumb->show();
        crumbs_.push_back(crumb);
    }
    setActive(isActive_);
}

QRect PathBar::field() const {
    const int left = theme_.px(10 + 3 * buttonSide + 8);
    const int boxHeight = theme_.px(28);
    return {left, (height() - boxHeight) / 2, width() - left - theme_.px(10), boxHeight};
}

void PathBar::resizeEvent(QResizeEvent*) {
    int left = theme_.px(7);
    for (auto* button : {back_, forward_, up_}) {
        const int side = theme_.px(buttonSide);
        button->setGeometry(left, (height() - side) / 2, side, side);
        left += side + theme_.px(1);
    }
    layOutCrumbs();
}

void PathBar::layOutCrumbs() {
    const auto room = field().adjusted(theme_.px(28), 0, -theme_.px(6), 0);
    const int gap = theme_.px(separatorWidth);
    int total = 0;
    for (const auto* crumb : crumbs_)
        total += crumb->sizeHint().width() + gap;

    // The first and the last crumb stay; those behind the first give way to "…".
    std::size_t hidden = 0;
    while (crumbs_.size() > hidden + 2 && total - gap > room.width()) {
        total -= crumbs_[++hidden]->sizeHint().width() + gap;
        if (hidden == 1)
            total += more_->sizeHint().width() + gap;
    }
    more_->setVisible(hidden > 0);
    separators_.clear();
    int left = room.left();
    const auto place = [&](Crumb* crumb) {
        if (left > room.left()) {
            separators_.emplace_back(left + gap / 2, room.center().y());
            left += gap;
        }
        const int width = std::min(crumb->sizeHint().width(), std::max(0, room.right() - left));
        crumb->setGeometry(left, room.top(), width, room.height());
        left += width;
    };
    for (std::size_t i = 0; i < crumbs_.size(); ++i) {
        const bool isHidden = i > 0 && i <= hidden;
        crumbs_[i]->setVisible(!isHidden);
        if (i == 1 && hidden > 0)
            place(more_);
        if (!isHidden)
            place(crumbs_[i]);
    }
    update();
}

void PathBar::showHiddenCrumbs() {
    QMenu menu(this);
    menu.setStyleSheet(theme_.styleSheet());
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
