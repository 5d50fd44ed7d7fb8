#include "app/ui/settings/ShortcutRow.h"

#include "app/commands/KeyLegend.h"
#include "app/ui/AccessibleRole.h"
#include "app/ui/ActionIcons.h"
#include "app/ui/IconButton.h"
#include "app/ui/PlatformWords.h"
#include "app/ui/Text.h"
#include "app/ui/dialogs/ElidedLabel.h"
#include "app/ui/dialogs/LabelColor.h"
#include "app/ui/settings/KeyRecorder.h"
#include "app/ui/settings/ShortcutNote.h"
#include "core/base/CzechText.h"
#include "core/base/FoldedText.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <chrono>
#include <utility>

namespace fennik::ui {

namespace {

constexpr double lineHeight = 32;
constexpr double sideMargin = 16;
constexpr double iconSide = 16;
constexpr double iconGap = 14;
constexpr double buttonSide = 28;
constexpr double dotSide = 6;
constexpr double barWidth = 3; // beside the row with the keyboard
constexpr auto flashTime = std::chrono::milliseconds(350);

/// Says by its colour and its tooltip that the action has other combinations than by default.
class ChangedDot final : public QWidget {
public:
    ChangedDot(const Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
        setObjectName(QStringLiteral("changedDot"));
        setToolTip(QStringLiteral("Změněno"));
        setFixedSize(theme.px(3 * dotSide), theme.px(lineHeight));
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme_.tokens().accentText);
        const double radius = theme_.px(dotSide) / 2.0;
        painter.drawEllipse(QRectF(rect()).center(), radius, radius);
    }

private:
    const Theme& theme_;
};

QString titlesOf(const std::vector<app::KAction>& actions) {
    QStringList titles;
    for (const auto action : actions)
        titles += fromUtf8(quoted(PlatformWords::title(action).toStdString()));
    return titles.join(QStringLiteral(", "));
}

} // namespace

ShortcutRow::ShortcutRow(const UiContext& context, app::KeyboardLayout& layout, app::KAction action,
                         QWidget* parent)
    : QWidget(parent),
      context_(context),
      action_(action),
      line_(new QWidget(this)),
      title_(new ElidedLabel(PlatformWords::title(action), line_)),
      dot_(new ChangedDot(context.theme, line_)),
      none_(new QLabel(QStringLiteral("bez zkratky"), line_)),
      chipRow_(new QHBoxLayout),
      recorder_(new KeyRecorder(context, layout, line_)),
      add_(new IconButton(QStringLiteral("plus"), QStringLiteral("Přidat zkratku"), KeyCaps::enter,
                          context.theme, context.icons, line_)),
      reset_(new IconButton(
          QStringLiteral("undo-2"), QStringLiteral("Vrátit na výchozí"),
          fromUtf8(app::KeyLegend::legend(KeyCombo::parse("cmd+delete"), context.shortcuts.map())),
          context.theme, context.icons, line_)),
      note_(new ShortcutNote(context.theme, context.icons, this)) {
    setAccessibleRole(*this, QAccessible::ListItem);
    setObjectName(fromUtf8(app::KActions::identifier(action)) + QStringLiteral("Row"));
    setFocusPolicy(Qt::StrongFocus);
    const auto& theme = context.theme;
    title_->setFont(theme.font(FontRole::body));
    followColor(*title_, theme, &Tokens::text);
    none_->setFont(theme.font(FontRole::detail));
    followColor(*none_, theme, &Tokens::text3);
    add_->setObjectName(QStringLiteral("addShortcut"));
    reset_->setObjectName(QStringLiteral("resetShortcuts"));
    auto keepsRoom = reset_->sizePolicy();
    keepsRoom.setRetainSizeWhenHidden(true);
    reset_->setSizePolicy(keepsRoom);
    for (auto* button : {add_, reset_})
        button->setFixedSize(theme.px(buttonSide), theme.px(buttonSide));
    recorder_->hide();
    flash_.setSingleShot(true);
    flash_.setInterval(flashTime);

    line_->setFixedHeight(theme.px(lineHeight));
    auto* row = new QHBoxLayout(line_);
    row->setContentsMargins(theme.px(sideMargin + iconSide + iconGap), 0, theme.px(10), 1);
    row->setSpacing(theme.px(6));
    row->addWidget(title_, 1);
    row->addWidget(dot_);
    row->addWidget(none_);
    chipRow_->setSpacing(theme.px(6));
    row->addLayout(chipRow_);
    row->addWidget(recorder_);
    row->addWidget(add_);
    row->addWidget(reset_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(line_);
    column->addWidget(note_);

    connect(add_, &QAbstractButton::clicked, this, &ShortcutRow::record);
    connect(reset_, &QAbstractButton::clicked, this, [this] {
        setFocus(Qt::OtherFocusReason);
        context_.shortcuts.reset(action_);
    });
    connect(recorder_, &KeyRecorder::pressed, this, &ShortcutRow::take);
    connect(recorder_, &KeyRecorder::cancelled, this, [this] {
        if (!note_->asks())
            stopRecording();
    });
    connect(note_, &ShortcutNote::declined, this, &ShortcutRow::stopRecording);
    connect(note_, &ShortcutNote::confirmed, this, [this] {
        const auto combo = std::exchange(asked_, {});
        stopRecording();
        context_.shortcuts.assign(combo, action_, ShortcutMap::Replacing::yes);
    });
    connect(&flash_, &QTimer::timeout, this, qOverload<>(&QWidget::update));
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    takeShortcuts();
}

bool ShortcutRow::has(const KeyCombo& combo) const {
    return std::ranges::any_of(chips_, [&](const auto* chip) { return chip->combo() == combo; });
}

bool ShortcutRow::matches(const std::u32string& folded) const {
    const auto contains = [&](const QString& text) {
        return foldedText(text.toStdString()).find(folded) != std::u32string::npos;
    };
    return contains(title_->text()) ||
           std::ranges::any_of(chips_, [&](const auto* chip) { return contains(chip->text()); });
}

bool ShortcutRow::hasCollision() const {
    return std::ranges::any_of(chips_, [this](const auto* chip) {
        return !context_.shortcuts.actions(chip->combo(), action_).empty();
    });
}

void ShortcutRow::takeShortcuts() {
    auto looks = chipLooks();
    if (!std::ranges::equal(looks, chips_, {}, {}, &ShortcutChip::look)) {
        const int chosen = chosenChip();
        // The keyboard must not wander off with a chip that goes.
        if (chosen >= 0)
            setFocus(Qt::OtherFocusReason);
        replaceChips(looks);
        if (chosen >= 0)
            chooseChip(std::min(chosen, int(chips_.size()) - 1));
    }
    describe();
}

std::vector<ShortcutChip::Look> ShortcutRow::chipLooks() const {
    const auto& store = context_.shortcuts;
    std::vector<ShortcutChip::Look> looks;
    for (const auto& combo : store.map().combos(app::KActions::identifier(action_))) {
        const auto others = store.actions(combo, action_);
        auto description = looks.empty() ? QStringLiteral("Hlavní zkratka, ⌫ odebere")
                                         : QStringLiteral("⌫ odebere");
        if (!others.empty())
            description = QStringLiteral("Tuto zkratku má i %1").arg(titlesOf(others));
        looks.push_back({.combo = combo,
                         .legend = fromUtf8(app::KeyLegend::legend(combo, store.map())),
                         .isPrimary = looks.empty(),
                         .collides = !others.empty(),
                         .description = context_.keys().sentence(description.toStdString())});
    }
    return looks;
}

void ShortcutRow::replaceChips(const std::vector<ShortcutChip::Look>& looks) {
    for (auto* chip : std::exchange(chips_, {})) {
        chipRow_->removeWidget(chip);
        chip->hide();
        chip->deleteLater(); // it may be the one that asked for this
    }
    for (const auto& look : looks) {
        auto* chip = new ShortcutChip(look, context_.theme, context_.icons, line_);
        chip->setRemovable(isWithin_);
        chipRow_->addWidget(chip);
        chip->show();
        connect(chip, &ShortcutChip::removeRequested, this, [this, chip] {
            removeChip(int(std::ranges::find(chips_, chip) - chips_.begin()));
        });
        connect(chip, &ShortcutChip::dragged, this, [this, chip](int x) { drag(chip, x); });
        connect(chip, &ShortcutChip::dropped, this, [this, chip] { drop(chip); });
        chips_.push_back(chip);
    }
}

void ShortcutRow::describe() {
    const bool isChanged = context_.shortcuts.isChanged(action_);
    dot_->setVisible(isChanged);
    reset_->setVisible(isChanged);
    none_->setVisible(chips_.empty() && recorder_->isHidden());
    QStringList spoken{title_->text()};
    for (const auto* chip : chips_)
        spoken += chip->text();
    if (chips_.empty())
        spoken += none_->text();
    if (isChanged)
        spoken += QStringLiteral("změněno");
    if (hasCollision())
        spoken += QStringLiteral("zkratku má i jiná akce");
    setAccessibleName(spoken.join(QStringLiteral(", ")));
    update();
}

void ShortcutRow::takeFocusWithin(bool isWithin) {
    if (std::exchange(isWithin_, isWithin) == isWithin)
        return;
    for (auto* chip : chips_)
        chip->setRemovable(isWithin);
    if (!isWithin)
        stopRecording();
    update();
}

int ShortcutRow::chosenChip() const {
    const auto found = std::ranges::find_if(chips_, &QWidget::hasFocus);
    return found == chips_.end() ? -1 : int(found - chips_.begin());
}

void ShortcutRow::chooseChip(int place) {
    if (place < 0)
        setFocus(Qt::OtherFocusReason);
    else
        chips_[std::size_t(place)]->setFocus(Qt::OtherFocusReason);
}

void ShortcutRow::record() {
    note_->hide();
    recorder_->show();
    describe();
    recorder_->setFocus(Qt::OtherFocusReason);
}

void ShortcutRow::take(const KeyCombo& combo) {
    using Assigned = app::ShortcutStore::Assigned;
    auto& store = context_.shortcuts;
    const auto legend = fromUtf8(app::KeyLegend::legend(combo, store.map()));
    switch (store.assign(combo, action_, ShortcutMap::Replacing::no)) {
    case Assigned::added:
        stopRecording();
        break;
    case Assigned::unchanged:
        stopRecording();
        flash();
        break;
    case Assigned::owned: {
        const auto owners = store.actions(combo, action_);
        asked_ = combo;
        note_->ask((owners.size() == 1 ? QStringLiteral("%1 už má akce %2. Přeřadit ji sem?")
                                       : QStringLiteral("%1 už mají akce %2. Přeřadit ji sem?"))
                       .arg(legend, titlesOf(owners)));
        break;
    }
    case Assigned::reserved:
        note_->refuse(
            QStringLiteral("%1 patří systému: %2").arg(legend, fromUtf8(*combo.reservedTitle())));
        break;
    }
}

void ShortcutRow::stopRecording() {
    if (recorder_->isHidden())
        return;
    const bool hadKeyboard = isAncestorOf(QApplication::focusWidget());
    recorder_->hide();
    note_->hide();
    describe();
    if (hadKeyboard)
        setFocus(Qt::OtherFocusReason);
}

void ShortcutRow::removeChip(int place) {
    if (place >= 0 && place < int(chips_.size()))
        context_.shortcuts.remove(KeyCombo(chips_[std::size_t(place)]->combo()), action_);
}

void ShortcutRow::moveChip(int place, int step) {
    const int target = place + step;
    if (place < 0 || target < 0 || target >= int(chips_.size()))
        return;
    context_.shortcuts.move(KeyCombo(chips_[std::size_t(place)]->combo()), action_,
                            std::size_t(target));
    chooseChip(target);
}

void ShortcutRow::drag(ShortcutChip* chip, int x) {
    const auto old = std::ranges::find(chips_, chip);
    auto target = std::ranges::find_if(chips_, [&](const auto* other) {
        return x < other->geometry().right() + chipRow_->spacing();
    });
    if (target == chips_.end())
        --target;
    if (target == old)
        return;
    if (old < target)
        std::rotate(old, old + 1, target + 1);
    else
        std::rotate(target, old, old + 1);
    for (auto* each : chips_) {
        chipRow_->removeWidget(each);
        chipRow_->addWidget(each);
    }
}

void ShortcutRow::drop(ShortcutChip* chip) {
    const auto place = std::ranges::find(chips_, chip) - chips_.begin();
    context_.shortcuts.move(KeyCombo(chip->combo()), action_, std::size_t(place));
}

void ShortcutRow::flash() {
    flash_.start();
    update();
}

void ShortcutRow::keyPressEvent(QKeyEvent* event) {
    const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const bool isPlain = modifiers == Qt::NoModifier;
    const bool hasCtrl = modifiers == Qt::ControlModifier;
    const int chosen = chosenChip();
    const int count = int(chips_.size());
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (isPlain && !event->isAutoRepeat())
            record();
        return;
    case Qt::Key_Plus:
        record();
        return;
    case Qt::Key_Left:
    case Qt::Key_Right: {
        const int step = event->key() == Qt::Key_Right ? 1 : -1;
        // The row itself is a stop like its chips.
        if (isPlain)
            chooseChip((chosen + 1 + step + count + 1) % (count + 1) - 1);
        else if (hasCtrl)
            moveChip(chosen, step);
        return;
    }
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
        if (isPlain)
            removeChip(chosen < 0 ? count - 1 : chosen);
        else if (hasCtrl && event->key() == Qt::Key_Backspace)
            context_.shortcuts.reset(action_);
        return;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        if (isPlain)
            emit keyForList(event->key());
        return;
    default:
        event->ignore();
    }
}

void ShortcutRow::mousePressEvent(QMouseEvent* event) {
    setFocus(Qt::MouseFocusReason);
    event->accept();
}

void ShortcutRow::paintEvent(QPaintEvent*) {
    const auto& theme = context_.theme;
    const auto& tokens = theme.tokens();
    QPainter painter(this);
    const QRect line(0, 0, width(), line_->height());
    painter.fillRect(rect(), flash_.isActive() ? tokens.warnSoft
                             : isWithin_       ? tokens.accentSoft
                                               : tokens.panel);
    if (isWithin_)
        painter.fillRect(0, 0, theme.px(barWidth), line.height(), tokens.accent);
    painter.fillRect(0, height() - 1, width(), 1, tokens.line);
    const int side = theme.px(iconSide);
    painter.drawPixmap(theme.px(sideMargin), (line.height() - side) / 2,
                       context_.icons.line(ActionIcons::iconOf(app::KActions::symbolName(action_)),
                                           side, tokens.text2, devicePixelRatioF()));
}

} // namespace fennik::ui
