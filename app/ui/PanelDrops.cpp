#include "app/ui/PanelDrops.h"

#include "app/ui/DropHint.h"
#include "app/ui/FileDrag.h"
#include "app/ui/PanelTable.h"
#include "app/ui/PathBar.h"
#include "app/ui/TabStrip.h"
#include "app/ui/Text.h"

#include <QDropEvent>
#include <QScrollBar>
#include <QWidget>

#include <chrono>
#include <utility>

namespace fennik::ui {

namespace {

constexpr auto dwellTime = std::chrono::milliseconds(800);
constexpr double scrollEdge = 20;
constexpr auto scrollTime = std::chrono::milliseconds(80);

} // namespace

PanelDrops::PanelDrops(const UiContext& context, app::PanelModel& panel, PanelTable& table,
                       QWidget& message, PathBar& path, TabStrip& tabs)
    : QObject(&table),
      context_(context),
      panel_(panel),
      table_(table),
      message_(message),
      path_(path),
      tabs_(tabs) {
    for (QWidget* widget : {table_.viewport(), &message_, static_cast<QWidget*>(&path_),
                            static_cast<QWidget*>(&tabs_)}) {
        widget->setAcceptDrops(true);
        widget->installEventFilter(this);
    }
    dwelling_.setSingleShot(true);
    dwelling_.setInterval(dwellTime);
    connect(&dwelling_, &QTimer::timeout, this, &PanelDrops::openPlace);
    scrolling_.setInterval(scrollTime);
    connect(&scrolling_, &QTimer::timeout, this, &PanelDrops::scroll);
}

bool PanelDrops::eventFilter(QObject* watched, QEvent* event) {
    auto* widget = qobject_cast<QWidget*>(watched);
    switch (event->type()) {
    case QEvent::DragEnter: {
        auto& entering = static_cast<QDropEvent&>(*event);
        files_ = FileDrag::files(*entering.mimeData());
        // Whether there is a place for them shows with every move.
        entering.setAccepted(!files_.empty());
        return true;
    }
    case QEvent::DragMove:
        drag(widget, static_cast<QDropEvent&>(*event));
        return true;
    case QEvent::DragLeave:
        end();
        return true;
    case QEvent::Drop:
        drop(widget, static_cast<QDropEvent&>(*event));
        return true;
    default:
        return false;
    }
}

PanelDrops::Place PanelDrops::rowAt(const QPoint& point) const {
    if (panel_.archive())
        return {.isInArchive = true};
    const int row = table_.rowAt(point.y());
    const auto& items = panel_.items();
    if (row >= 0 && static_cast<std::size_t>(row) < items.size()) {
        const auto item = items.view(static_cast<std::size_t>(row));
        if (item.isParentLink)
            return {Kind::row, row, panel_.folder().parent()};
        if (item.isFolderLike())
            return {Kind::row, row, panel_.folder().appending(item.name, FileUrl::Form::directory)};
    }
    return {Kind::panel, -1, panel_.folder()};
}

std::optional<PanelDrops::Place> PanelDrops::placeAt(const QWidget* widget,
                                                     const QPoint& point) const {
    if (widget == &path_) {
        const auto crumb = path_.crumbAt(point);
        if (!crumb)
            return std::nullopt;
        return Place{Kind::crumb, crumb->index, crumb->folder.value_or(FileUrl()), !crumb->folder};
    }
    if (widget == &tabs_) {
        const int tab = tabs_.tabAt(point);
        if (tab < 0)
            return std::nullopt;
        const auto& path = panel_.tabs()[static_cast<std::size_t>(tab)].path;
        return Place{Kind::tab, tab, FileUrl(path, FileUrl::Form::directory)};
    }
    // While an error is shown there is no folder to drop into.
    if (panel_.error())
        return std::nullopt;
    const bool isBesideRows = widget == &message_ && !panel_.archive();
    return isBesideRows ? Place{Kind::panel, -1, panel_.folder()} : rowAt(point);
}

std::optional<std::string> PanelDrops::obstacle(const Place& place,
                                                const std::vector<FileUrl>& files) const {
    if (place.isInArchive)
        return std::string(app::ArchiveTexts::isReadOnly);
    return context_.app.dropObstacle(files, place.folder);
}

void PanelDrops::drag(QWidget* widget, QDropEvent& event) {
    const auto point = event.position().toPoint();
    const auto kind = FileDrag::kind(event);
    lastPoint_ = point;
    lastKind_ = kind;
    if (widget != table_.viewport() || scrollAt(point) == 0)
        scrolling_.stop();
    else if (!scrolling_.isActive())
        scrolling_.start();
    if (!showAt(widget, point, kind)) {
        event.ignore();
        return;
    }
    event.setDropAction(kind == TransferKind::move ? Qt::MoveAction : Qt::CopyAction);
    event.accept();
}

bool PanelDrops::showAt(QWidget* widget, const QPoint& point, TransferKind kind) {
    const auto place = placeAt(widget, point);
    const auto reason = place ? obstacle(*place, files_) : std::nullopt;
    if (!place || reason) {
        show(std::nullopt, reason ? fromUtf8(*reason) : QString());
        return false;
    }
    show(place, QStringLiteral("Ctrl kopíruje · Shift přesouvá · Esc zruší"));
    if (hint_ == nullptr)
        hint_ = new DropHint(context_.theme, context_.icons, table_.window());
    hint_->showAt(widget->mapTo(widget->window(), point), kind,
                  shownName(place->folder.lastComponent()));
    return true;
}

int PanelDrops::scrollAt(const QPoint& point) const {
    const int edge = context_.theme.px(scrollEdge);
    if (point.y() < edge)
        return -1;
    return point.y() >= table_.viewport()->height() - edge ? 1 : 0;
}

void PanelDrops::scroll() {
    auto& bar = *table_.verticalScrollBar();
    const int before = bar.value();
    bar.setValue(before + scrollAt(lastPoint_));
    if (bar.value() == before)
        scrolling_.stop();
    else
        showAt(table_.viewport(), lastPoint_, lastKind_);
}

void PanelDrops::drop(QWidget* widget, QDropEvent& event) {
    const auto place = placeAt(widget, event.position().toPoint());
    const auto kind = FileDrag::kind(event);
    const auto files = std::exchange(files_, {});
    end();
    if (!place || files.empty() || obstacle(*place, files)) {
        event.ignore();
        return;
    }
    // A program that hears of a move may remove the files itself, before they have arrived.
    event.setDropAction(Qt::CopyAction);
    event.accept();
    emit dropped(kind, files, place->folder);
}

void PanelDrops::show(const std::optional<Place>& place, const QString& text) {
    if (!place && hint_ != nullptr)
        hint_->hide();
    if (place == place_ && text == text_)
        return;
    if (place != place_) {
        const bool opens = place && place->kind != Kind::panel && place->folder != panel_.folder();
        if (opens)
            dwelling_.start();
        else
            dwelling_.stop();
    }
    place_ = place;
    text_ = text;
    const auto indexOf = [&](Kind kind) {
        return place_ && place_->kind == kind ? place_->index : -1;
    };
    table_.setDropRow(indexOf(Kind::row));
    path_.setDropCrumb(indexOf(Kind::crumb));
    tabs_.setDropTab(indexOf(Kind::tab));
    emit changed(text_);
}

void PanelDrops::end() {
    dwelling_.stop();
    scrolling_.stop();
    show(std::nullopt, {});
}

void PanelDrops::openPlace() {
    if (!place_)
        return;
    const auto place = *place_;
    show(std::nullopt, {}); // what lies under the mouse is something else now
    if (place.kind == Kind::tab)
        panel_.selectTab(static_cast<std::size_t>(place.index));
    else
        panel_.navigate(place.folder);
}

} // namespace fennik::ui
