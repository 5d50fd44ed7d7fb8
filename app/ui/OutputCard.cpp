#include "app/ui/OutputCard.h"

#include "app/model/CommandLine.h"
#include "app/ui/AccessibleRole.h"
#include "app/ui/OutputEdge.h"
#include "app/ui/OutputView.h"
#include "app/ui/RunState.h"
#include "app/ui/Text.h"
#include "app/ui/TextButton.h"
#include "app/ui/dialogs/ElidedLabel.h"
#include "app/ui/dialogs/LabelColor.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

namespace fennik::ui {

namespace {

using namespace std::chrono_literals;

constexpr double gapAbove = 8;
constexpr double radius = 9;
constexpr double header = 32;
constexpr double usualHeight = 286; ///< without the gap
constexpr double leastHeight = 120;
constexpr double narrowWidth = 900; ///< below, buttons are their icons

} // namespace

OutputCard::OutputCard(const Theme& theme, Icons& icons, QWidget* parent)
    : QWidget(parent),
      theme_(theme),
      icons_(icons),
      command_(new ElidedLabel({}, this)),
      folder_(new ElidedLabel({}, this)),
      state_(new RunState(theme, icons, this)),
      stop_(new TextButton(QStringLiteral("Ukončit"), theme, this)),
      copy_(new TextButton(QStringLiteral("Kopírovat výstup"), theme, this)),
      close_(new TextButton(QStringLiteral("Zavřít výstup (Esc)"), theme, this)),
      text_(new OutputView(theme, this)),
      edge_(new OutputEdge(theme, this)),
      wantedHeight_(theme.px(usualHeight)),
      motion_(120ms, 0, this) {
    setAccessibleRole(*this, QAccessible::Grouping);
    setObjectName(QStringLiteral("outputCard"));
    setAccessibleName(QStringLiteral("Výstup příkazu"));
    command_->setObjectName(QStringLiteral("outputCommand"));
    folder_->setObjectName(QStringLiteral("outputFolder"));
    stop_->setObjectName(QStringLiteral("stopCommand"));
    copy_->setObjectName(QStringLiteral("copyOutput"));
    close_->setObjectName(QStringLiteral("closeOutput"));
    copy_->setLineIcon(QStringLiteral("copy"), icons);
    close_->setLineIcon(QStringLiteral("x"), icons);
    setFixedHeight(0);
    hide();

    followColor(*command_, theme, &Tokens::text);
    followColor(*folder_, theme, &Tokens::text2);
    for (auto* button : {stop_, copy_, close_})
        button->setFocusPolicy(Qt::TabFocus);
    connect(stop_, &QAbstractButton::clicked, this, &OutputCard::stopRequested);
    connect(copy_, &QAbstractButton::clicked, this, &OutputCard::copyRequested);
    connect(close_, &QAbstractButton::clicked, this, &OutputCard::closeRequested);
    connect(text_, &OutputView::escaped, this, &OutputCard::closeRequested);
    connect(edge_, &OutputEdge::moved, this, [this](int by) {
        wantedHeight_ = std::clamp(wholeHeight() - top() + by, theme_.px(leastHeight),
                                   std::max(theme_.px(leastHeight), heightLimit_ - top()));
        takeHeight();
    });
    text_->installEventFilter(this);
    connect(&motion_, &Motion::moved, this, &OutputCard::takeHeight);
    connect(&motion_, &Motion::arrived, this, [this] { setVisible(motion_.value() > 0); });
    connect(&theme_, &Theme::changed, this, &OutputCard::takeTheme);
    takeTheme();
}

void OutputCard::takeTheme() {
    command_->setFont(theme_.font(FontRole::fixedLine));
    folder_->setFont(theme_.font(FontRole::detail));
    layOut();
    update();
}

void OutputCard::showRun(const app::CommandRun& run, const QString& folder) {
    using State = app::CommandRun::State;
    const auto command = shownName(run.command);
    if (std::exchange(shownRun_, run.id) != run.id) {
        command_->setText(command);
        folder_->setText(QStringLiteral("v ") + folder);
        text_->setAccessibleName(QStringLiteral("Výstup příkazu ") + command);
        text_->begin(command);
    }
    text_->showOutput(run.output);
    const auto spoken = QStringLiteral("Příkaz ") + command + QStringLiteral(": ");
    if (run.state != State::running && stop_->hasFocus())
        takeFocus();
    stop_->setVisible(run.state == State::running);
    switch (run.state) {
    case State::running: {
        const auto text = QStringLiteral("Běží…");
        state_->show(RunState::Look::running, text, spoken + text);
        break;
    }
    case State::ended: {
        const int code = run.exitCode.value_or(0);
        const auto text = QStringLiteral("Skončilo s kódem %1").arg(code);
        state_->show(code == 0 ? RunState::Look::good : RunState::Look::bad, text, spoken + text);
        break;
    }
    case State::notStarted: {
        const auto text = QStringLiteral("Nejde spustit");
        state_->show(RunState::Look::bad, text, fromUtf8(run.output.text()));
        break;
    }
    }
    layOut();
    if (std::exchange(isOnShow_, true))
        return;
    show();
    motion_.moveTo(1);
}

void OutputCard::showOutput(const app::CommandRun& run) {
    text_->showOutput(run.output);
}

void OutputCard::dismiss() {
    if (!std::exchange(isOnShow_, false))
        return;
    const auto* focus = QApplication::focusWidget();
    if (focus != nullptr && isAncestorOf(focus))
        emit left();
    motion_.moveTo(0);
}

void OutputCard::takeFocus() {
    text_->setFocus(Qt::TabFocusReason);
}

void OutputCard::setHeightLimit(int limit) {
    heightLimit_ = limit;
    takeHeight();
}

int OutputCard::top() const {
    return theme_.px(gapAbove);
}

int OutputCard::bodyTop() const {
    return top() + 1 + theme_.px(header) + 1;
}

int OutputCard::wholeHeight() const {
    return std::min(top() + wantedHeight_, heightLimit_);
}

void OutputCard::takeHeight() {
    const int height = qRound(wholeHeight() * motion_.value());
    if (height != this->height())
        setFixedHeight(height);
}

void OutputCard::layOut() {
    const int middle = top() + 1 + theme_.px(header) / 2;
    const int gap = theme_.px(8);
    int right = width() - theme_.px(6);
    const auto placeAtRight = [&](QWidget* part) {
        const auto size = part->sizeHint();
        right -= size.width();
        part->setGeometry(right, middle - size.height() / 2, size.width(), size.height());
        right -= gap;
    };
    placeAtRight(close_);
    placeAtRight(copy_);
    if (!stop_->isHidden())
        placeAtRight(stop_);
    placeAtRight(state_);

    const int left = theme_.px(35);
    const int room = std::max(0, right - left);
    const int lineHeight = theme_.px(16);
    const int command = std::min(command_->sizeHint().width(), room);
    command_->setGeometry(left, middle - lineHeight / 2, command, lineHeight);
    folder_->setGeometry(left + command + gap, middle - lineHeight / 2,
                         std::max(0, room - command - gap), lineHeight);
    // The text stays where it is while the card comes and goes.
    const int bottom = std::max(wholeHeight(), bodyTop() + 2);
    text_->setGeometry(1, bodyTop(), width() - 2, bottom - bodyTop() - theme_.px(radius) / 2);
    edge_->setGeometry(0, 0, width(), top());
}

bool OutputCard::event(QEvent* event) {
    // What none of its parts wants: Esc leads out of the buttons too.
    if (event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        emit closeRequested();
        return true;
    }
    return QWidget::event(event);
}

bool OutputCard::focusNextPrevChild(bool next) {
    std::vector<QWidget*> stops{text_};
    for (QWidget* part : {static_cast<QWidget*>(stop_), static_cast<QWidget*>(copy_),
                          static_cast<QWidget*>(close_), static_cast<QWidget*>(edge_)}) {
        if (!part->isHidden())
            stops.push_back(part);
    }
    const auto place = std::ranges::find(stops, QApplication::focusWidget()) - stops.begin();
    const auto target = next ? place + 1 : place - 1;
    if (target < 0)
        emit left();
    else if (target >= std::ssize(stops))
        emit passed();
    else
        stops[std::size_t(target)]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

bool OutputCard::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        update(); // the frame shows where the keyboard is
    return QWidget::eventFilter(watched, event);
}

void OutputCard::resizeEvent(QResizeEvent*) {
    const bool isNarrow = width() < theme_.px(narrowWidth);
    for (auto* button : {copy_, close_})
        button->setTextShown(!isNarrow);
    layOut();
}

void OutputCard::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double line = text_->hasFocus() ? 2 : 1;
    const auto frame = QRectF(rect()).adjusted(line / 2, top() + line / 2, -line / 2, -line / 2);
    QPainterPath card;
    card.addRoundedRect(frame, radius, radius);
    painter.fillPath(card, tokens.field);
    painter.setClipRect(QRectF(0, 0, width(), bodyTop()));
    painter.fillPath(card, tokens.chrome);
    painter.fillRect(QRectF(0, bodyTop() - 1, width(), 1), tokens.line);
    painter.setClipping(false);
    painter.strokePath(card, QPen(text_->hasFocus() ? tokens.accent : tokens.line, line));
    const int side = theme_.px(16);
    painter.drawPixmap(
        theme_.px(13), top() + 1 + (theme_.px(header) - side) / 2,
        icons_.line(QStringLiteral("square-terminal"), side, tokens.text2, devicePixelRatioF()));
}

} // namespace fennik::ui
