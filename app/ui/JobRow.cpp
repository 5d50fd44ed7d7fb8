#include "app/ui/JobRow.h"

#include "app/ui/IconButton.h"
#include "app/ui/JobErrors.h"
#include "app/ui/ProgressBar.h"
#include "app/ui/TabularText.h"
#include "app/ui/Text.h"
#include "app/ui/UnfoldButton.h"

#include <QAccessibleWidget>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <chrono>
#include <utility>

namespace fennik::ui {

namespace {

using State = JobSnapshot::State;

constexpr double rowHeight = 46;
constexpr double tileLeft = 12;
constexpr double tileSide = 28;
constexpr double textLeft = 56;
constexpr double buttonSide = 28;
constexpr double buttonGap = 2;
constexpr double rightMargin = 9;
constexpr double gap = 14;
constexpr auto figuresStay = std::chrono::milliseconds(250);

QString kindIcon(TransferKind kind) {
    switch (kind) {
    case TransferKind::copy:
        return QStringLiteral("copy");
    case TransferKind::move:
        return QStringLiteral("file-output");
    case TransferKind::pack:
        return QStringLiteral("archive");
    case TransferKind::extract:
        break;
    }
    return QStringLiteral("package-open");
}

QString statusIcon(State state) {
    switch (state) {
    case State::failed:
        return QStringLiteral("circle-alert");
    case State::waiting:
        return QStringLiteral("hourglass");
    case State::preparing:
        return QStringLiteral("loader-circle");
    case State::running:
        return {};
    case State::paused:
        return QStringLiteral("pause");
    case State::askingConflict:
        return QStringLiteral("circle-question-mark");
    case State::finished:
        return QStringLiteral("circle-check");
    case State::cancelled:
        break;
    }
    return QStringLiteral("ban");
}

ProgressBar::Kind barKind(State state) {
    switch (state) {
    case State::failed:
        return ProgressBar::Kind::failed;
    case State::paused:
    case State::cancelled:
        return ProgressBar::Kind::paused;
    case State::askingConflict:
        return ProgressBar::Kind::asking;
    case State::finished:
        return ProgressBar::Kind::done;
    default:
        return ProgressBar::Kind::working;
    }
}

class AccessibleJob final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit AccessibleJob(JobRow* row)
        : QAccessibleWidget(row, QAccessible::ProgressBar), row_(*row) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? row_.spoken() : QAccessibleWidget::text(kind);
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }
    QVariant currentValue() const override { return int(JobTexts::fraction(row_.job()) * 100); }
    void setCurrentValue(const QVariant&) override {}
    QVariant minimumValue() const override { return 0; }
    QVariant maximumValue() const override { return 100; }
    QVariant minimumStepSize() const override { return 1; }

private:
    JobRow& row_;
};

QAccessibleInterface* accessibleJob(const QString&, QObject* object) {
    auto* row = qobject_cast<JobRow*>(object);
    return row == nullptr ? nullptr : new AccessibleJob(row);
}

} // namespace

struct JobRow::Columns {
    double text = 0; ///< where it ends
    QRect bar;
    QRectF detail;
};

JobRow::JobRow(const JobSnapshot& job, const Words& words, const Theme& theme, Icons& icons,
               QWidget* parent)
    : QWidget(parent),
      words_(words),
      theme_(theme),
      icons_(icons),
      job_(job),
      bar_(new ProgressBar(theme, this)),
      unfold_(new UnfoldButton(theme, icons, this)),
      pause_(new IconButton(QStringLiteral("pause"), QStringLiteral("Pozastavit"), {}, theme, icons,
                            this)),
      resume_(new IconButton(QStringLiteral("play"), QStringLiteral("Pokračovat"), {}, theme, icons,
                             this)),
      cancel_(new IconButton(QStringLiteral("x"),
                             QStringLiteral("Zrušit (rozpracovaný soubor se uklidí)"), {}, theme,
                             icons, this)),
      remove_(new IconButton(QStringLiteral("x"), QStringLiteral("Odebrat z fronty"), {}, theme,
                             icons, this)) {
    QAccessible::installFactory(accessibleJob);
    setObjectName(QStringLiteral("jobRow"));
    setFocusPolicy(Qt::TabFocus); // a click on a button leaves the keyboard where it is
    pause_->setObjectName(QStringLiteral("jobPause"));
    resume_->setObjectName(QStringLiteral("jobResume"));
    cancel_->setObjectName(QStringLiteral("jobCancel"));
    remove_->setObjectName(QStringLiteral("jobRemove"));
    figures_.setSingleShot(true);
    figures_.setInterval(figuresStay);
    connect(&figures_, &QTimer::timeout, this, &JobRow::takeFigures);
    connect(pause_, &QAbstractButton::clicked, this, &JobRow::pauseRequested);
    connect(resume_, &QAbstractButton::clicked, this, &JobRow::resumeRequested);
    connect(cancel_, &QAbstractButton::clicked, this, &JobRow::cancelRequested);
    connect(remove_, &QAbstractButton::clicked, this, &JobRow::removeRequested);
    connect(unfold_, &QAbstractButton::toggled, this, &JobRow::setShowErrors);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
    takeJob();
}

QString JobRow::spoken() const {
    return JobTexts::spoken(job_);
}

void JobRow::setJob(const JobSnapshot& job) {
    job_ = job;
    showProgress();
    auto shown = shownJob();
    shown.name = shown_.name;
    shown.figures = shown_.figures;
    const bool differsInFiguresOnly = shown == shown_;
    if (!differsInFiguresOnly)
        takeJob();
    else if (!figures_.isActive())
        takeFigures();
    if (errors_ != nullptr)
        errors_->setErrors(*job_.errors);
}

JobRow::Shown JobRow::shownJob() const {
    Shown shown{.state = job_.state,
                .title = fromUtf8(job_.title),
                .target = JobTexts::target(job_.destination, words_.home),
                .status = JobTexts::status(job_),
                .note = JobTexts::note(job_, words_.undo)};
    if (job_.state == State::running)
        shown.figures = JobTexts::figures(job_);
    if (!job_.hasEnded())
        shown.name = shownName(job_.currentName);
    return shown;
}

void JobRow::takeFigures() {
    const auto shown = shownJob();
    if (shown == shown_)
        return;
    const auto parts = columns();
    if (shown.figures != shown_.figures)
        update(parts.detail.toAlignedRect());
    if (shown.name != shown_.name)
        update(QRect(theme_.px(textLeft), 0, int(parts.text) - theme_.px(textLeft), rowBottom()));
    shown_ = shown;
    figures_.start();
}

void JobRow::takeJob() {
    shown_ = shownJob();
    figures_.start();
    showProgress();
    unfold_->setCount(job_.errors->size());
    pause_->setVisible(canPause());
    resume_->setVisible(canResume());
    cancel_->setVisible(!job_.hasEnded());
    remove_->setVisible(job_.hasEnded());
    setToolTip(toolTipText(shownName(job_.destination)));
    layOut();
    update();
}

bool JobRow::canPause() const {
    return (job_.state == State::running || job_.state == State::preparing) && !job_.paused;
}

bool JobRow::canResume() const {
    return !job_.hasEnded() && (job_.paused || job_.state == State::paused);
}

int JobRow::rowBottom() const {
    return theme_.px(rowHeight);
}

void JobRow::showProgress() {
    bar_->setProgress(JobTexts::fraction(job_), barKind(job_.state));
    const int percent = int(JobTexts::fraction(job_) * 100);
    if (percent == spokenPercent_)
        return;
    spokenPercent_ = percent;
    QAccessibleValueChangeEvent event(this, percent);
    QAccessible::updateAccessibility(&event);
}

void JobRow::setShowErrors(bool shows) {
    const bool willShow = shows && !job_.errors->empty();
    if (std::exchange(showErrors_, willShow) == willShow)
        return;
    unfold_->setChecked(showErrors_);
    unfold_->setCount(job_.errors->size());
    if (!showErrors_ && errors_ != nullptr) {
        if (errors_->hasFocus())
            setFocus();
        delete std::exchange(errors_, nullptr);
    } else if (showErrors_ && errors_ == nullptr) {
        errors_ = new JobErrors(theme_, this);
        errors_->setErrors(*job_.errors);
        errors_->show();
        connect(errors_, &JobErrors::left, this, qOverload<>(&QWidget::setFocus));
    }
    layOut();
    emit heightChanged();
}

JobRow::Columns JobRow::columns() const {
    constexpr double leastText = 150;
    constexpr double leastBar = 60;
    constexpr double mostBar = 330;
    constexpr double mostDetail = 420;
    const double right = width() - theme_.px(rightMargin + 2 * buttonSide + buttonGap + 18);
    const double space = theme_.px(gap);
    const double room = right - theme_.px(textLeft) - 2 * space;
    const double text = theme_.px(leastText);
    const double bar = std::clamp(room - text - theme_.px(mostDetail), double(theme_.px(leastBar)),
                                  double(theme_.px(mostBar)));
    const double detail = std::clamp(room - text - bar, 0.0, double(theme_.px(mostDetail)));
    const int barHeight = theme_.px(6);
    Columns result;
    result.text = right - detail - bar - 2 * space;
    result.bar =
        QRect(int(result.text + space), (rowBottom() - 1 - barHeight) / 2, int(bar), barHeight);
    // Where there are few buttons, their room is the detail's.
    double end = right;
    for (const QWidget* button : {static_cast<QWidget*>(unfold_), static_cast<QWidget*>(pause_),
                                  static_cast<QWidget*>(resume_)}) {
        if (!button->isHidden())
            end = std::min(end, button->x() - space / 2);
    }
    result.detail = QRectF(right - detail, 0, end - (right - detail), rowBottom() - 1);
    return result;
}

void JobRow::layOut() {
    const int side = theme_.px(buttonSide);
    const int top = (rowBottom() - 1 - side) / 2;
    int right = width() - theme_.px(rightMargin);
    const auto place = [&](QWidget* button, int wide) {
        button->setGeometry(right - wide, top, wide, side);
        right -= wide + theme_.px(buttonGap);
    };
    cancel_->setGeometry(right - side, top, side, side);
    place(remove_, side);
    if (canPause() || canResume()) {
        pause_->setGeometry(right - side, top, side, side);
        place(resume_, side);
    }
    if (!unfold_->isHidden())
        place(unfold_, unfold_->sizeHint().width());
    bar_->setGeometry(columns().bar);
    if (errors_ != nullptr)
        errors_->setGeometry(0, rowBottom(), width(), height() - rowBottom() - 1);
}

QSize JobRow::sizeHint() const {
    return {theme_.px(1000), heightForWidth(width())};
}

int JobRow::heightForWidth(int width) const {
    return rowBottom() + (errors_ == nullptr ? 0 : errors_->heightForWidth(width) + 1);
}

void JobRow::resizeEvent(QResizeEvent*) {
    layOut();
}

void JobRow::cancelOrRemove() {
    if (job_.hasEnded())
        emit removeRequested();
    else
        emit cancelRequested();
}

void JobRow::keyPressEvent(QKeyEvent* event) {
    const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
    switch (modifiers == Qt::NoModifier ? event->key() : 0) {
    case Qt::Key_Up:
        emit moveRequested(-1);
        break;
    case Qt::Key_Down:
        emit moveRequested(1);
        break;
    case Qt::Key_Right:
        setShowErrors(true);
        break;
    case Qt::Key_Left:
        setShowErrors(false);
        break;
    case Qt::Key_Space:
        if (canPause())
            emit pauseRequested();
        else if (canResume())
            emit resumeRequested();
        break;
    case Qt::Key_Backspace:
        if (!event->isAutoRepeat()) // a held key must not cancel one job after the other
            cancelOrRemove();
        break;
    case Qt::Key_Escape:
    case Qt::Key_Tab:
        emit left();
        break;
    default:
        event->ignore();
        break;
    }
}

void JobRow::mousePressEvent(QMouseEvent*) {
    setFocus(Qt::MouseFocusReason);
}

void JobRow::focusInEvent(QFocusEvent*) {
    update();
}

void JobRow::focusOutEvent(QFocusEvent*) {
    update();
}

QColor JobRow::statusColor() const {
    const auto& tokens = theme_.tokens();
    switch (shown_.state) {
    case State::failed:
        return tokens.err;
    case State::askingConflict:
        return tokens.mark;
    case State::finished:
        return tokens.ok;
    default:
        return tokens.text2;
    }
}

void JobRow::paintTile(QPainter& painter) const {
    const auto& tokens = theme_.tokens();
    const int side = theme_.px(tileSide);
    const QRect tile(theme_.px(tileLeft), (rowBottom() - 1 - side) / 2, side, side);
    painter.setPen(Qt::NoPen);
    painter.setBrush(tokens.hover);
    painter.drawRoundedRect(tile, 7, 7);
    const bool isResult = shown_.state == State::failed || shown_.state == State::finished;
    const int icon = theme_.px(16);
    const int inset = (side - icon) / 2;
    painter.drawPixmap(tile.topLeft() + QPoint(inset, inset),
                       icons_.line(kindIcon(job_.kind), icon,
                                   isResult ? statusColor() : tokens.text2, devicePixelRatioF()));
}

void JobRow::paintNames(QPainter& painter) const {
    const auto& tokens = theme_.tokens();
    const double middle = (rowBottom() - 1) / 2.0;
    const double line = theme_.px(16);
    QRectF area(theme_.px(textLeft), middle - line, columns().text - theme_.px(textLeft), line);
    const auto titleFont = theme_.font(FontRole::body, QFont::Medium);
    painter.setFont(titleFont);
    painter.setPen(tokens.text);
    const bool isAlone = shown_.target.isEmpty();
    if (isAlone)
        area.moveTop(middle - line / 2);
    painter.drawText(
        area, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
        QFontMetricsF(titleFont).elidedText(shown_.title, Qt::ElideMiddle, area.width()));
    if (isAlone)
        return;
    area.moveTop(middle);
    const auto draw = [&](const QString& text, const QColor& color, QFont::Weight weight) {
        const auto font = theme_.font(FontRole::detail, weight);
        const QFontMetricsF metrics(font);
        const auto shown = metrics.elidedText(text, Qt::ElideMiddle, area.width());
        painter.setFont(font);
        painter.setPen(color);
        painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
        area.setLeft(area.left() + metrics.horizontalAdvance(shown));
    };
    draw(QStringLiteral("→ ") + shown_.target, tokens.text3, QFont::Normal);
    if (shown_.name.isEmpty())
        return;
    draw(QStringLiteral(" · "), tokens.text3, QFont::Normal);
    draw(shown_.name, tokens.text, QFont::Medium);
}

void JobRow::paintDetail(QPainter& painter) const {
    const auto& tokens = theme_.tokens();
    const double line = theme_.px(16);
    auto area = columns().detail;
    const double middle = area.center().y();
    area = QRectF(area.left(), middle - line / 2, area.width(), line);
    if (shown_.status.isEmpty()) {
        const auto font = theme_.font(FontRole::detail, QFont::Medium);
        painter.setFont(font);
        painter.setPen(tokens.text);
        TabularText::draw(painter, area, Qt::AlignLeft, shown_.figures.amounts);
        area.setLeft(area.left() + TabularText::width(font, shown_.figures.amounts));
        painter.setFont(theme_.font(FontRole::detail));
        painter.setPen(tokens.text2);
        if (area.width() > 0)
            TabularText::draw(painter, area, Qt::AlignLeft, shown_.figures.rest);
        return;
    }
    if (!shown_.note.isEmpty())
        area.moveTop(middle - line);
    const int side = theme_.px(15);
    painter.drawPixmap(
        QPointF(area.left(), area.top() + (line - side) / 2),
        icons_.line(statusIcon(shown_.state), side, statusColor(), devicePixelRatioF()));
    const bool isNews = shown_.state == State::failed || shown_.state == State::finished ||
                        shown_.state == State::askingConflict;
    painter.setFont(theme_.font(FontRole::detail, isNews ? QFont::Medium : QFont::Normal));
    painter.setPen(statusColor());
    TabularText::draw(painter, area.adjusted(theme_.px(21), 0, 0, 0), Qt::AlignLeft, shown_.status);
    if (shown_.note.isEmpty())
        return;
    area.moveTop(middle);
    painter.setFont(theme_.font(FontRole::detail));
    painter.setPen(tokens.text2);
    TabularText::draw(painter, area, Qt::AlignLeft, shown_.note);
}

void JobRow::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.fillRect(0, height() - 1, width(), 1, tokens.line);
    if (errors_ != nullptr) {
        painter.fillRect(0, rowBottom() - 1, width(), 1, tokens.line);
        painter.fillRect(errors_->geometry(), tokens.errSoft);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    paintTile(painter);
    paintNames(painter);
    paintDetail(painter);
    if (!hasFocus())
        return;
    painter.setPen(QPen(tokens.accent, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(3, 2, width() - 6, rowBottom() - 5), 6, 6);
}

} // namespace fennik::ui
