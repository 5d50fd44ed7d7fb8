#include "app/ui/dialogs/ConflictDialog.h"

#include "app/ui/AccessibleRole.h"
#include "app/ui/Text.h"
#include "app/ui/dialogs/CheckBox.h"
#include "app/ui/dialogs/ChoiceTile.h"
#include "app/ui/dialogs/ConflictSide.h"
#include "app/ui/dialogs/Deafness.h"
#include "core/base/CzechText.h"
#include "core/listing/Format.h"

#include <QApplication>
#include <QGridLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace fennik::ui {

namespace {

constexpr double leastForTwoSides = 560;

struct Choice {
    ConflictChoice choice;
    int key;
    const char* icon;
    const char* title;
    const char* detail;
};

/// In reading order.
constexpr std::array choices{
    Choice{ConflictChoice::rename, Qt::Key_O, "copy-plus", "Ponechat oba",
           "Nový dostane jméno „… 2“"},
    Choice{ConflictChoice::overwrite, Qt::Key_P, "replace", "Přepsat", "Stávající jde do Koše"},
    Choice{ConflictChoice::skip, Qt::Key_K, "skip-forward", "Přeskočit",
           "Stávající zůstane beze změny"},
    Choice{ConflictChoice::overwriteOlder, Qt::Key_S, "clock-arrow-up", "Přepsat jen starší",
           "Novější stávající zůstane"},
};

/// The arrow from the new item to the one that is there.
class Arrow final : public QWidget {
public:
    Arrow(const Theme& theme, Icons& icons, QWidget* parent)
        : QWidget(parent), theme_(theme), icons_(icons) {
        setFixedWidth(theme.px(28));
        connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    }

protected:
    void paintEvent(QPaintEvent*) override {
        const int side = theme_.px(16);
        QPainter(this).drawPixmap((width() - side) / 2, (height() - side) / 2,
                                  icons_.line(QStringLiteral("arrow-right"), side,
                                              theme_.tokens().text2, devicePixelRatioF()));
    }

private:
    const Theme& theme_;
    Icons& icons_;
};

class WarningStrip final : public QWidget {
public:
    WarningStrip(const QString& text, const Theme& theme, Icons& icons, QWidget* parent)
        : QWidget(parent), theme_(theme), icons_(icons) {
        setAccessibleRole(*this, QAccessible::StaticText);
        setAccessibleName(text);
        setFixedHeight(theme.px(32));
        connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    }

protected:
    void paintEvent(QPaintEvent*) override {
        const auto& tokens = theme_.tokens();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(tokens.warnSoft);
        painter.drawRoundedRect(rect(), 7, 7);
        const int side = theme_.px(16);
        const int left = theme_.px(12);
        painter.drawPixmap(
            left, (height() - side) / 2,
            icons_.line(QStringLiteral("triangle-alert"), side, tokens.warn, devicePixelRatioF()));
        painter.setFont(theme_.font(FontRole::detail, QFont::Medium));
        painter.setPen(tokens.warn);
        painter.drawText(rect().adjusted(left + theme_.px(24), 0, -left, 0),
                         Qt::AlignLeft | Qt::AlignVCenter, accessibleName());
    }

private:
    const Theme& theme_;
    Icons& icons_;
};

DialogCard::Texts texts() {
    return {.icon = QStringLiteral("files"),
            .tone = DialogCard::Tone::caution,
            .hintIcon = QStringLiteral("shield-check"),
            .hint = QStringLiteral("Přepsaný soubor jde vždy do Koše – nic se neztratí."),
            .cancel = QStringLiteral("Zrušit operaci")};
}

Comparison compared(bool isMore, bool isSame) {
    return isMore ? Comparison::more : isSame ? Comparison::same : Comparison::none;
}

} // namespace

ConflictDialog::ConflictDialog(const Theme& theme, Icons& icons, QWidget* parent)
    : DialogCard(texts(), theme, icons, parent),
      newItem_(new ConflictSide(QStringLiteral("Nový"), theme, icons, nullptr)),
      existing_(new ConflictSide(QStringLiteral("Stávající"), theme, icons, nullptr)),
      arrow_(new Arrow(theme, icons, nullptr)),
      sides_(new QBoxLayout(QBoxLayout::LeftToRight)),
      grid_(new QGridLayout),
      mismatch_(new WarningStrip(QStringLiteral("Pozor: jedno je složka a druhé soubor."), theme,
                                 icons, nullptr)),
      forAll_(new CheckBox(QStringLiteral("Použít i pro všechny další shody v této operaci"), theme,
                           nullptr)) {
    setPreferredWidth(largeWidth);
    // Large letters in a small window cut it off rather than everything beside it.
    forAll_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    newItem_->setObjectName(QStringLiteral("newItem"));
    existing_->setObjectName(QStringLiteral("existingItem"));
    mismatch_->setObjectName(QStringLiteral("typeMismatch"));
    forAll_->setObjectName(QStringLiteral("forAll"));
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins({});
    layout->setSpacing(theme.px(8));
    sides_->setSpacing(0);
    sides_->addWidget(newItem_, 1);
    sides_->addWidget(arrow_);
    sides_->addWidget(existing_, 1);
    layout->addLayout(sides_);
    layout->addWidget(mismatch_);
    layout->addSpacing(theme.px(6));
    grid_->setSpacing(theme.px(8));
    for (std::size_t i = 0; i < choiceCount; ++i) {
        const auto& choice = choices[i];
        tiles_[i] = new ChoiceTile({.icon = QString::fromUtf8(choice.icon),
                                    .title = QString::fromUtf8(choice.title),
                                    .detail = QString::fromUtf8(choice.detail),
                                    .letter = QString(QChar(choice.key))},
                                   theme, icons, content);
        connect(tiles_[i], &QAbstractButton::clicked, this, [this, i] { answer(i); });
    }
    placeTiles(2);
    layout->addLayout(grid_);
    layout->addWidget(forAll_);
    setContent(content);
    qApp->installEventFilter(this);
    new Deafness(*this);
}

ConflictDialog::~ConflictDialog() {
    qApp->removeEventFilter(this);
}

void ConflictDialog::ask(const Conflict& conflict, const JobSnapshot& job) {
    const auto name = fromUtf8(quoted(conflict.destination.lastComponent()));
    setTitle(name + QStringLiteral(" už v cíli je"));
    setSubtitle(QStringLiteral("%1 · hotovo %2 z %3")
                    .arg(fromUtf8(job.title), fromUtf8(Format::grouped(job.doneFiles)),
                         fromUtf8(Format::grouped(job.totalFiles))));
    const auto kindOf = [&](const FileUrl& url) {
        const bool isFolder = conflict.typeMismatch && url.hasDirectoryForm();
        return isFolder ? FileKind::directory : FileKind::file;
    };
    const bool sameSize = conflict.sourceSize == conflict.destinationSize;
    const bool sameDate = conflict.sourceDate == conflict.destinationDate;
    const auto side = [&](ConflictSide& shown, const FileUrl& url, std::int64_t size,
                          std::int64_t otherSize, const Date& date, const Date& otherDate) {
        shown.setItem({.url = url,
                       .kind = kindOf(url),
                       .size = size,
                       .date = date,
                       .bySize = conflict.typeMismatch ? Comparison::none
                                                       : compared(size > otherSize, sameSize),
                       .byDate = compared(date > otherDate, sameDate)});
    };
    side(*newItem_, conflict.source, conflict.sourceSize, conflict.destinationSize,
         conflict.sourceDate, conflict.destinationDate);
    side(*existing_, conflict.destination, conflict.destinationSize, conflict.sourceSize,
         conflict.destinationDate, conflict.sourceDate);
    mismatch_->setVisible(conflict.typeMismatch);
    forAll_->setChecked(false);
    if (isVisible())
        takeFocus();
    emit heightChanged();
}

void ConflictDialog::resizeEvent(QResizeEvent* event) {
    const bool isNarrow = width() < theme().px(leastForTwoSides);
    sides_->setDirection(isNarrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    sides_->setSpacing(isNarrow ? theme().px(8) : 0);
    arrow_->setHidden(isNarrow);
    placeTiles(isNarrow ? 1 : 2);
    DialogCard::resizeEvent(event);
}

void ConflictDialog::answer(std::size_t choice) {
    emit answered({.choice = choices[choice].choice, .applyToAll = forAll_->isChecked()});
}

void ConflictDialog::placeTiles(int columns) {
    if (std::exchange(columns_, columns) == columns)
        return;
    for (int i = 0; auto* tile : tiles_) {
        grid_->addWidget(tile, i / columns, i % columns);
        ++i;
    }
}

bool ConflictDialog::moveFocus(int key) {
    const auto current = int(std::ranges::find_if(tiles_, &QWidget::hasFocus) - tiles_.begin());
    const int count = int(choiceCount);
    if (current == count)
        return false;
    int column = current % columns_;
    int line = current / columns_;
    switch (key) {
    case Qt::Key_Left:
        column = 0;
        break;
    case Qt::Key_Right:
        column = columns_ - 1;
        break;
    case Qt::Key_Up:
        line = std::max(0, line - 1);
        break;
    case Qt::Key_Down:
        line = std::min(count / columns_ - 1, line + 1);
        break;
    default:
        return false;
    }
    focus(*tiles_[std::size_t(columns_ * line + column)], Qt::TabFocusReason);
    return true;
}

void ConflictDialog::keyPressEvent(QKeyEvent* event) {
    const auto modifiers = event->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
    const int key = event->key();
    const auto choice = std::ranges::find(choices, key, &Choice::key);
    if (modifiers == Qt::NoModifier && choice != choices.end())
        answer(std::size_t(choice - choices.begin()));
    else if (modifiers == Qt::NoModifier && key == Qt::Key_V)
        forAll_->toggle();
    else
        DialogCard::keyPressEvent(event);
}

bool ConflictDialog::eventFilter(QObject* watched, QEvent* event) {
    const auto* widget = qobject_cast<QWidget*>(watched);
    const bool isKey =
        event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (!isKey || widget == nullptr || !(widget == this || isAncestorOf(widget)))
        return DialogCard::eventFilter(watched, event);
    const auto& press = *static_cast<QKeyEvent*>(event);
    if (press.isAutoRepeat()) {
        event->accept();
        return true;
    }
    // Before the content takes the arrows for scrolling.
    const bool isPlain = (press.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    return event->type() == QEvent::KeyPress && isPlain && moveFocus(press.key());
}

} // namespace fennik::ui
