#include "app/ui/settings/ShortcutsPage.h"

#include "app/commands/KeyLegend.h"
#include "app/ui/KeyButton.h"
#include "app/ui/RunLabel.h"
#include "app/ui/Text.h"
#include "app/ui/dialogs/DialogHost.h"
#include "app/ui/dialogs/LabelColor.h"
#include "app/ui/settings/CollisionStrip.h"
#include "app/ui/settings/KeyRecorder.h"
#include "app/ui/settings/ShortcutList.h"
#include "core/base/CzechText.h"

#include <QAction>
#include <QBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QScrollArea>

#include <algorithm>
#include <utility>
#include <vector>

namespace fennik::ui {

namespace {

constexpr double margin = 16;
constexpr double gap = 8;
constexpr double leastSearch = 200;

int changedCount(const app::ShortcutStore& store) {
    return int(std::ranges::count_if(app::KActions::all(),
                                     [&](app::KAction action) { return store.isChanged(action); }));
}

QString changedText(int count) {
    return QStringLiteral("%1 %2").arg(count).arg(
        fromUtf8(pluralForm(count, {"změněný", "změněné", "změněných"})));
}

bool haveCollision(const app::ShortcutStore& store) {
    return std::ranges::any_of(store.map().collisions(), [&](const auto& collision) {
        return store.actions(collision.combo).size() > 1;
    });
}

} // namespace

ShortcutsPage::ShortcutsPage(const UiContext& context, app::KeyboardLayout& layout,
                             DialogHost& cards, QWidget* parent)
    : QWidget(parent),
      context_(context),
      cards_(cards),
      top_(new QWidget(this)),
      topRow_(new QBoxLayout(QBoxLayout::LeftToRight, top_)),
      search_(new QLineEdit(top_)),
      searchIcon_(search_->addAction(QIcon(), QLineEdit::LeadingPosition)),
      recorder_(new KeyRecorder(context, layout, top_)),
      find_(new KeyButton(QStringLiteral("Najít stiskem klávesy"), {}, context.theme, top_)),
      resetAll_(new KeyButton(QStringLiteral("Vrátit vše na výchozí…"), {}, context.theme, top_)),
      collisions_(new CollisionStrip(context.theme, context.icons, this)),
      collisionRoom_(new QWidget(this)),
      area_(new QScrollArea(this)),
      list_(new ShortcutList(context, layout, nullptr)),
      nothing_(new QLabel(this)),
      foot_(new QWidget(this)),
      count_(new RunLabel(context.theme, Qt::AlignRight, foot_)) {
    setObjectName(QStringLiteral("keysPage"));
    const auto& theme = context.theme;
    search_->setObjectName(QStringLiteral("shortcutSearch"));
    search_->setPlaceholderText(QStringLiteral("Hledat příkaz nebo zkratku"));
    search_->setAccessibleName(search_->placeholderText());
    search_->installEventFilter(this);
    recorder_->setObjectName(QStringLiteral("findRecorder"));
    recorder_->hide();
    find_->setObjectName(QStringLiteral("findByKey"));
    find_->setLineIcon(QStringLiteral("keyboard"), context_.icons, &Tokens::text2);
    resetAll_->setObjectName(QStringLiteral("resetAllShortcuts"));
    for (auto* button : {find_, resetAll_})
        button->setFocusPolicy(Qt::StrongFocus);
    const int side = theme.px(margin);
    topRow_->setContentsMargins(side, theme.px(12), side, theme.px(12));
    topRow_->setSpacing(theme.px(gap));
    topRow_->addWidget(search_, 1);
    topRow_->addWidget(recorder_, 1);
    topRow_->addWidget(find_);
    topRow_->addWidget(resetAll_);

    auto* collisionRow = new QVBoxLayout(collisionRoom_);
    collisionRow->setContentsMargins(side, theme.px(10), side, theme.px(10));
    collisionRow->addWidget(collisions_);

    area_->setFrameShape(QFrame::NoFrame);
    area_->setFocusPolicy(Qt::NoFocus);
    area_->setWidgetResizable(true);
    area_->setWidget(list_);
    area_->viewport()->setAutoFillBackground(false);
    list_->setAutoFillBackground(false); // which the scroll area has set
    nothing_->setObjectName(QStringLiteral("nothingFound"));
    nothing_->setAlignment(Qt::AlignCenter);
    nothing_->setWordWrap(true);
    nothing_->setFont(theme.font(FontRole::body));
    nothing_->hide();
    followColor(*nothing_, theme, &Tokens::text2);

    auto* hint = new QLabel(
        context.keys().sentence(
            "První zkratka je hlavní – ukazuje se v nabídkách a na liště. Enter přidá, ⌫ odebere."),
        foot_);
    hint->setFont(theme.font(FontRole::detail));
    hint->setWordWrap(true);
    followColor(*hint, theme, &Tokens::text2);
    count_->setObjectName(QStringLiteral("shortcutCount"));
    auto* footRow = new QHBoxLayout(foot_);
    footRow->setContentsMargins(side, theme.px(8), side, theme.px(8));
    footRow->setSpacing(theme.px(margin));
    footRow->addWidget(hint, 1);
    footRow->addWidget(count_);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(1);
    column->addWidget(top_);
    column->addWidget(collisionRoom_);
    column->addWidget(area_, 1);
    column->addWidget(nothing_, 1);
    column->addWidget(foot_);

    connect(search_, &QLineEdit::textEdited, this, &ShortcutsPage::search);
    connect(find_, &QAbstractButton::clicked, this, &ShortcutsPage::findByKey);
    connect(recorder_, &KeyRecorder::pressed, this, &ShortcutsPage::takeKey);
    connect(recorder_, &KeyRecorder::cancelled, this, &ShortcutsPage::endFinding);
    connect(resetAll_, &QAbstractButton::clicked, this, &ShortcutsPage::askToResetAll);
    connect(collisions_, &QAbstractButton::clicked, this, [this] {
        search_->clear();
        search({});
        list_->goToCollision();
    });
    connect(list_, &ShortcutList::leftUpwards, search_, qOverload<>(&QWidget::setFocus));
    connect(list_, &ShortcutList::rowEntered, this, [this](QWidget* row) {
        area_->ensureWidgetVisible(row, 0, context_.theme.px(margin));
    });
    connect(&context_.shortcuts, &app::ShortcutStore::changed, this, &ShortcutsPage::takeShortcuts);
    connect(&theme, &Theme::changed, this, &ShortcutsPage::takeTheme);
    takeShortcuts();
    takeTheme();
}

void ShortcutsPage::search(const QString& text) {
    const bool isFound = list_->showMatching(text) > 0;
    nothing_->setText(QStringLiteral("Tomu žádný příkaz ani zkratka neodpovídá."));
    nothing_->setVisible(!isFound);
    area_->setVisible(isFound);
}

void ShortcutsPage::findByKey() {
    search_->hide();
    recorder_->show();
    recorder_->setFocus(Qt::OtherFocusReason);
}

void ShortcutsPage::takeKey(const KeyCombo& combo) {
    const auto legend = fromUtf8(app::KeyLegend::legend(combo, context_.shortcuts.map()));
    const bool isFound = list_->showOwners(combo) > 0;
    const auto reserved = combo.reservedTitle();
    nothing_->setText(reserved
                          ? QStringLiteral("%1 patří systému: %2").arg(legend, fromUtf8(*reserved))
                          : QStringLiteral("Zkratku %1 žádný příkaz nemá.").arg(legend));
    nothing_->setVisible(!isFound);
    area_->setVisible(isFound);
    search_->setText(legend);
    endFinding();
}

void ShortcutsPage::endFinding() {
    if (recorder_->isHidden())
        return;
    const bool hadKeyboard = recorder_->hasFocus();
    search_->show();
    if (hadKeyboard) {
        search_->setFocus(Qt::OtherFocusReason);
        search_->selectAll();
    }
    recorder_->hide();
}

void ShortcutsPage::askToResetAll() {
    auto* card = new DialogCard({.icon = QStringLiteral("undo-2"),
                                 .tone = DialogCard::Tone::caution,
                                 .title = QStringLiteral("Vrátit všechny zkratky na výchozí?"),
                                 .subtitle = changedText(changedCount(context_.shortcuts)),
                                 .confirm = QStringLiteral("Vrátit vše")},
                                context_.theme, context_.icons, &cards_);
    auto* text = new QLabel(
        QStringLiteral("Vaše vlastní zkratky se ztratí a odebrané výchozí se vrátí. Zpět to vzít "
                       "nepůjde."));
    text->setFont(context_.theme.font(FontRole::body));
    text->setWordWrap(true);
    followColor(*text, context_.theme, &Tokens::text);
    card->setContent(text);
    connect(card, &DialogCard::cancelled, &cards_, &DialogHost::close);
    connect(card, &DialogCard::confirmed, this, [this] {
        cards_.close();
        context_.shortcuts.resetAll();
    });
    cards_.open(card);
}

void ShortcutsPage::takeShortcuts() {
    collisionRoom_->setVisible(haveCollision(context_.shortcuts));
    const int changed = changedCount(context_.shortcuts);
    resetAll_->setEnabled(changed > 0);
    const auto& tokens = context_.theme.tokens();
    std::vector<RunLabel::Run> runs{
        {QStringLiteral("%1 příkazů").arg(app::KActions::count), tokens.text2}};
    if (changed > 0) {
        runs.push_back({QStringLiteral(" · "), tokens.text2});
        runs.push_back({changedText(changed), tokens.text, QFont::DemiBold});
    }
    count_->setRuns(std::move(runs));
}

void ShortcutsPage::takeTheme() {
    const int side = context_.theme.px(margin);
    searchIcon_->setIcon(context_.icons.line(QStringLiteral("search"), side,
                                             context_.theme.tokens().text2, devicePixelRatioF()));
    takeShortcuts();
    update();
}

void ShortcutsPage::keyPressEvent(QKeyEvent* event) {
    // Esc first ends the search, and only then closes the window.
    const bool isEscape = event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier;
    if (!isEscape || search_->text().isEmpty()) {
        event->ignore();
        return;
    }
    search_->clear();
    search({});
    search_->setFocus(Qt::OtherFocusReason);
}

bool ShortcutsPage::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && watched == search_) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter) {
            list_->takeFocus();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void ShortcutsPage::resizeEvent(QResizeEvent*) {
    const auto& theme = context_.theme;
    const int wanted = theme.px(leastSearch + 2 * margin + 2 * gap) + find_->sizeHint().width() +
                       resetAll_->sizeHint().width();
    topRow_->setDirection(width() < wanted ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

void ShortcutsPage::paintEvent(QPaintEvent*) {
    const auto& tokens = context_.theme.tokens();
    QPainter painter(this);
    painter.fillRect(foot_->geometry(), tokens.chrome);
    painter.fillRect(0, foot_->y() - 1, width(), 1, tokens.line);
    painter.fillRect(0, top_->geometry().bottom() + 1, width(), 1, tokens.line);
    if (!collisionRoom_->isHidden())
        painter.fillRect(0, collisionRoom_->geometry().bottom() + 1, width(), 1, tokens.line);
}

} // namespace fennik::ui
