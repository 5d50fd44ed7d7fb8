#include "app/ui/OutputCard.h"

#include "app/model/CommandLine.h"
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

#include <algorithm>
#include <utility>
#include <vector>

namespace fennik::ui {

namespace {

constexpr double usualHeight = 286; ///< without the gap
constexpr double leastHeight = 120;
constexpr double narrowWidth = 900; ///< below, buttons are their icons

} // namespace

OutputCard::OutputCard(const Theme& theme, Icons& icons, QWidget* parent)
    : DockedCard(theme, parent),
      icons_(icons),
      command_(new ElidedLabel({}, this)),
      folder_(new ElidedLabel({}, this)),
      state_(new RunState(theme, icons, this)),
      stop_(new TextButton(QStringLiteral("Ukončit"), theme, this)),
      copy_(new TextButton(QStringLiteral("Kopírovat výstup"), theme, this)),
      close_(new TextButton(QStringLiteral("Zavřít výstup (Esc)"), theme, this)),
      text_(new OutputView(theme, this)),
      edge_(new OutputEdge(theme, this)),
      height_(theme.px(usualHeight)) {
    setObjectName(QStringLiteral("outputCard"));
    setAccessibleName(QStringLiteral("Výstup příkazu"));
    command_->setObjectName(QStringLiteral("outputCommand"));
    folder_->setObjectName(QStringLiteral("outputFolder"));
    stop_->setObjectName(QStringLiteral("stopCommand"));
    copy_->setObjectName(QStringLiteral("copyOutput"));
    close_->setObjectName(QStringLiteral("closeOutput"));
    copy_->setLineIcon(QStringLiteral("copy"), icons);
    close_->setLineIcon(QStringLiteral("x"), icons);

    followColor(*command_, theme, &Tokens::text);
    followColor(*folder_, theme, &Tokens::text2);
    for (auto* button : {stop_, copy_, close_})
        button->setFocusPolicy(Qt::TabFocus);
    connect(stop_, &QAbstractButton::clicked, this, &OutputCard::stopRequested);
    connect(copy_, &QAbstractButton::clicked, this, &OutputCard::copyRequested);
    connect(close_, &QAbstractButton::clicked, this, &OutputCard::closeRequested);
    connect(text_, &OutputView::escaped, this, &OutputCard::closeRequested);
    connect(edge_, &OutputEdge::moved, this, [this](int by) {
        const int least = this->theme().px(leastHeight);
        height_ =
            std::clamp(wholeHeight() - top() + by, least, std::max(least, heightLimit() - top()));
        takeHeight();
    });
    text_->installEventFilter(this);
    connect(&theme, &Theme::changed, this, &OutputCard::takeTheme);
    takeTheme();
}

void OutputCard::takeTheme() {
    command_->setFont(theme().font(FontRole::fixedLine));
    folder_->setFont(theme().font(FontRole::detail));
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
    setOnShow(true);
}

void OutputCard::showOutput(const app::CommandRun& run) {
    text_->showOutput(run.output);
}

void OutputCard::takeFocus() {
    text_->setFocus(Qt::TabFocusReason);
}

int OutputCard::wantedHeight() const {
    return top() + height_;
}

void OutputCard::layOut() {
    const int middle = headerMiddle();
    const int gap = theme().px(8);
    int right = width() - theme().px(6);
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

    const int left = theme().px(35);
    const int room = std::max(0, right - left);
    const int lineHeight = theme().px(16);
    const int command = std::min(command_->sizeHint().width(), room);
    command_->setGeometry(left, middle - lineHeight / 2, command, lineHeight);
    folder_->setGeometry(left + command + gap, middle - lineHeight / 2,
                         std::max(0, room - command - gap), lineHeight);
    // The text stays where it is while the card comes and goes.
    const int bottom = std::max(wholeHeight(), bodyTop() + 2);
    text_->setGeometry(1, bodyTop(), width() - 2, bottom - bodyTop() - theme().px(radius) / 2);
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
    const bool isNarrow = width() < theme().px(narrowWidth);
    for (auto* button : {copy_, close_})
        button->setTextShown(!isNarrow);
    layOut();
}

void OutputCard::paintEvent(QPaintEvent*) {
    const auto& tokens = theme().tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool hasFocus = text_->hasFocus();
    paintCard(painter, tokens.field,
              QPen(hasFocus ? tokens.accent : tokens.line, hasFocus ? 2 : 1));
    const int side = theme().px(16);
    painter.drawPixmap(
        theme().px(13), headerMiddle() - side / 2,
        icons_.line(QStringLiteral("square-terminal"), side, tokens.text2, devicePixelRatioF()));
}

} // namespace fennik::ui
