#include "app/ui/preview/PreviewView.h"

#include "app/commands/KeyLegend.h"
#include "app/model/QuickPreview.h"
#include "app/ui/AccessibleRole.h"
#include "app/ui/FileLook.h"
#include "app/ui/IconButton.h"
#include "app/ui/LoadingView.h"
#include "app/ui/Text.h"
#include "app/ui/dialogs/ElidedLabel.h"
#include "app/ui/dialogs/LabelColor.h"
#include "app/ui/preview/FactRows.h"
#include "app/ui/preview/PreviewList.h"
#include "app/ui/preview/PreviewNotice.h"
#include "app/ui/preview/PreviewPicture.h"
#include "core/base/CzechText.h"
#include "core/base/Overloaded.h"

#include <QAccessible>
#include <QGraphicsOpacityEffect>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <chrono>
#include <utility>

namespace fennik::ui {

namespace {

using namespace std::chrono_literals;
using Direction = app::QuickPreview::Direction;

constexpr auto loadingShowsAfter = 150ms;
constexpr double radius = 9;
constexpr double header = 38;
constexpr double hintsHeight = 27;
/// Below this width the facts stand in one column, and bytes in shorter lines.
constexpr double wideFrom = 460;
constexpr double longHexFrom = 620;
/// Below these, what is said about the preview makes room for the preview.
constexpr double leastForWord = 240;
constexpr double leastForFacts = 280;
constexpr double leastForHints = 180;

QString placeText(const app::QuickPreview::Place& place) {
    if (place.count == 0)
        return {};
    const auto count = std::int64_t(place.count);
    if (place.number > 0)
        return QStringLiteral("%1 z %2").arg(place.number).arg(place.count);
    const auto word = pluralForm(count, {"označená", "označené", "označených"});
    return QStringLiteral("%1 %2").arg(count).arg(fromUtf8(word));
}

/// The keys that close the preview, as they stand on the keyboard.
QString closingKeys(const UiContext& context) {
    const auto& map = context.shortcuts.map();
    const auto first = [&map](app::KAction action) {
        const auto combos = map.combos(app::KActions::identifier(action));
        return combos.empty() ? QString() : fromUtf8(app::KeyLegend::legend(combos.front(), map));
    };
    QStringList keys{first(app::KAction::quickLook), first(app::KAction::escape)};
    keys.removeAll(QString());
    return keys.isEmpty() ? QString()
                          : keys.join(QStringLiteral(" nebo ")) + QStringLiteral(" zavře");
}

} // namespace

PreviewView::PreviewView(const UiContext& context, QWidget* parent)
    : QWidget(parent),
      context_(context),
      preview_(context.app.quickPreview()),
      theme_(context.theme),
      icon_(new QLabel(this)),
      name_(new ElidedLabel({}, this)),
      word_(new QLabel(QStringLiteral("náhled"), this)),
      back_(new IconButton(QStringLiteral("chevron-left"), QStringLiteral("Předchozí položka"),
                           QStringLiteral("←"), theme_, context.icons, this)),
      forth_(new IconButton(QStringLiteral("chevron-right"), QStringLiteral("Další položka"),
                            QStringLiteral("→"), theme_, context.icons, this)),
      place_(new QLabel(this)),
      close_(new IconButton(QStringLiteral("x"), QStringLiteral("Zavřít náhled"), KeyCaps::escape,
                            theme_, context.icons, this)),
      stripe_(new LoadingStripe(theme_, this)),
      body_(new QStackedWidget(this)),
      notice_(new PreviewNotice(theme_, context.icons, body_)),
      picture_(new PreviewPicture(theme_, body_)),
      text_(new QPlainTextEdit(body_)),
      list_(new PreviewList(theme_, context.icons, body_)),
      foot_(new QWidget(this)),
      factRows_(new QGridLayout(foot_)),
      hints_(new QWidget(this)),
      hint_(new ElidedLabel(QStringLiteral("Šipkami listujete dál – náhled jde s kurzorem."),
                            hints_)),
      keys_(new QLabel(hints_)),
      patience_(new QTimer(this)),
      motion_(120ms, 0, this) {
    setObjectName(QStringLiteral("previewView"));
    setAccessibleRole(*this, QAccessible::Grouping);
    setFocusPolicy(Qt::NoFocus);
    icon_->setFixedSize(theme_.px(16), theme_.px(16));
    name_->setObjectName(QStringLiteral("previewName"));
    name_->setFont(theme_.font(FontRole::body, QFont::DemiBold));
    place_->setObjectName(QStringLiteral("previewPlace"));
    back_->setObjectName(QStringLiteral("previewBack"));
    forth_->setObjectName(QStringLiteral("previewForth"));
    close_->setObjectName(QStringLiteral("previewClose"));
    hint_->setObjectName(QStringLiteral("previewHint"));
    keys_->setObjectName(QStringLiteral("previewKeys"));
    for (QLabel* label : {word_, place_, static_cast<QLabel*>(hint_), keys_})
        label->setFont(theme_.font(FontRole::detail));
    for (QLabel* label : {static_cast<QLabel*>(hint_), keys_})
        label->setFont(theme_.font(FontRole::small));
    followColor(*name_, theme_, &Tokens::text);
    for (QLabel* label : {word_, place_, static_cast<QLabel*>(hint_), keys_})
        followColor(*label, theme_, &Tokens::text2);
    for (auto* button : {back_, forth_, close_})
        button->setFixedSize(theme_.px(28), theme_.px(28));

    auto* top = new QHBoxLayout;
    top->setContentsMargins(theme_.px(14), 0, theme_.px(6), 0);
    top->setSpacing(theme_.px(6));
    top->addWidget(icon_);
    top->addSpacing(theme_.px(2));
    // The name takes no more room than it needs, so that the word stands behind it.
    name_->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
    top->addWidget(name_, 1);
    top->addWidget(word_);
    top->addStretch(0);
    for (QWidget* part : {static_cast<QWidget*>(back_), static_cast<QWidget*>(forth_),
                          static_cast<QWidget*>(place_), static_cast<QWidget*>(close_)})
        top->addWidget(part);

    text_->setObjectName(QStringLiteral("previewText"));
    text_->setAccessibleName(QStringLiteral("Text"));
    text_->setReadOnly(true);
    text_->setFocusPolicy(Qt::NoFocus);
    text_->setFrameShape(QFrame::NoFrame);
    text_->setTextInteractionFlags(Qt::NoTextInteraction);
    text_->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    text_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    text_->viewport()->setAutoFillBackground(false);
    text_->document()->setDocumentMargin(theme_.px(14));
    text_->setUndoRedoEnabled(false);
    for (QAbstractScrollArea* area :
         {static_cast<QAbstractScrollArea*>(text_), static_cast<QAbstractScrollArea*>(list_)}) {
        area->verticalScrollBar()->setAccessibleName(QStringLiteral("Posuvník náhledu"));
        connect(area->verticalScrollBar(), &QScrollBar::rangeChanged, this, &PreviewView::showKeys);
    }
    connect(body_, &QStackedWidget::currentChanged, this, &PreviewView::showKeys);
    for (auto* part : {static_cast<QWidget*>(notice_), static_cast<QWidget*>(picture_),
                       static_cast<QWidget*>(text_), static_cast<QWidget*>(list_)})
        body_->addWidget(part);

    foot_->setObjectName(QStringLiteral("previewFacts"));
    factRows_->setContentsMargins(theme_.px(16), theme_.px(10), theme_.px(16), theme_.px(10));
    factRows_->setVerticalSpacing(theme_.px(4));
    factRows_->setHorizontalSpacing(theme_.px(12));
    hints_->setFixedHeight(theme_.px(hintsHeight));
    auto* hints = new QHBoxLayout(hints_);
    hints->setContentsMargins(theme_.px(10), 0, theme_.px(11), 0);
    hints->addWidget(hint_, 1);
    hints->addWidget(keys_);
    keys_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(1, 0, 1, 1);
    rows->setSpacing(1);
    auto* headerArea = new QWidget(this);
    headerArea->setFixedHeight(headerHeight());
    headerArea->setLayout(top);
    rows->addWidget(headerArea);
    rows->addWidget(body_, 1);
    rows->addWidget(foot_);
    rows->addWidget(hints_);
    stripe_->hide();
    stripe_->raise();

    auto* effect = new QGraphicsOpacityEffect(this);
    effect->setEnabled(false);
    setGraphicsEffect(effect);
    patience_->setSingleShot(true);
    patience_->setInterval(loadingShowsAfter);
    connect(patience_, &QTimer::timeout, this, &PreviewView::showLoading);
    connect(&motion_, &Motion::moved, this, &PreviewView::setOpacity);
    connect(&motion_, &Motion::arrived, this, &PreviewView::arrive);
    connect(back_, &QAbstractButton::clicked, this, [this] { preview_.step(Direction::back); });
    connect(forth_, &QAbstractButton::clicked, this, [this] { preview_.step(Direction::forth); });
    connect(close_, &QAbstractButton::clicked, &context_.app, &app::AppModel::closePreview);
    connect(&context_.app, &app::AppModel::changed, this, [this](app::AppChanges changes) {
        if (changes.testFlag(app::AppChange::preview))
            takePreview();
    });
    connect(&theme_, &Theme::changed, this, &PreviewView::takeTheme);
    takeTheme();
    hide();
    takePreview();
}

PreviewView::~PreviewView() = default;

int PreviewView::headerHeight() const {
    return theme_.px(header);
}

void PreviewView::takePreview() {
    takeOpening(preview_.isOpen());
    if (!preview_.isOpen())
        return;
    takeMarks();
    const bool isNew = shownToken_ != preview_.token();
    if (preview_.isLoading()) {
        if (isNew && !patience_->isActive())
            patience_->start();
    } else if (isNew || !showsContent_) {
        patience_->stop();
        stripe_->hide();
        shownToken_ = preview_.token();
        showsContent_ = true;
        showSubject();
        showContent(preview_.content());
        tell();
    }
}

void PreviewView::takeOpening(bool isOpen) {
    setAttribute(Qt::WA_TransparentForMouseEvents, !isOpen);
    if (isOpen && isHidden()) {
        showKeys();
        notice_->show(FileLook::file, {}, {});
        body_->setCurrentWidget(notice_);
        showFacts({});
        shownToken_ = 0;
        show();
    } else if (!isOpen) {
        patience_->stop();
        stripe_->hide();
    }
    motion_.moveTo(isOpen ? 1 : 0);
}

void PreviewView::arrive() {
    const bool isGone = motion_.value() == 0;
    setVisible(!isGone);
    if (!isGone)
        return;
    picture_->clear();
    list_->clear();
    text_->clear();
}

QScrollBar* PreviewView::scrollBar() const {
    const auto* area = qobject_cast<QAbstractScrollArea*>(body_->currentWidget());
    auto* bar = area != nullptr ? area->verticalScrollBar() : nullptr;
    return bar != nullptr && bar->maximum() > bar->minimum() ? bar : nullptr;
}

void PreviewView::scrollPages(int pages) {
    if (auto* bar = scrollBar())
        bar->triggerAction(pages < 0 ? QAbstractSlider::SliderPageStepSub
                                     : QAbstractSlider::SliderPageStepAdd);
}

void PreviewView::showKeys() {
    QStringList keys{closingKeys(context_)};
    if (scrollBar() != nullptr && isWide_)
        keys.prepend(context_.keys().sentence("⌥⇞ a ⌥⇟ posouvá"));
    keys.removeAll(QString());
    keys_->setText(keys.join(QStringLiteral(" · ")));
}

void PreviewView::takeMarks() {
    place_->setText(placeText(preview_.place()));
    place_->setHidden(place_->text().isEmpty());
    back_->setEnabled(preview_.canStep(Direction::back));
    forth_->setEnabled(preview_.canStep(Direction::forth));
}

void PreviewView::showLoading() {
    if (!preview_.isOpen() || !preview_.isLoading())
        return;
    shownToken_ = preview_.token();
    showsContent_ = false;
    showSubject();
    stripe_->show();
    if (const auto& subject = preview_.subject())
        notice_->show(lookOf(subject->item.view()), QStringLiteral("Načítám…"), {});
    body_->setCurrentWidget(notice_);
}

void PreviewView::showSubject() {
    const auto& subject = preview_.subject();
    const auto name = subject ? shownName(subject->item.name) : QString();
    name_->setText(name);
    setAccessibleName(subject ? QStringLiteral("Náhled, ") + name : QStringLiteral("Náhled"));
    const auto look = subject ? lookOf(subject->item.view()) : FileLook::file;
    icon_->setPixmap(context_.icons.file(look, IconBadge::none, IconGround::panelInactive,
                                         icon_->width(), devicePixelRatioF()));
    icon_->setAccessibleName(subject ? kindText(subject->item.view()) : QString());
    icon_->setVisible(subject.has_value());
    showFacts(subject ? PreviewTexts::facts(*subject, app::PreviewNothing{})
                      : std::vector<PreviewTexts::Fact>());
}

void PreviewView::showContent(const app::PreviewContent& content) {
    const auto& subject = preview_.subject();
    if (!subject) {
        notice_->show(FileLook::file, QStringLiteral("Není co ukázat"), {});
        body_->setCurrentWidget(notice_);
        return;
    }
    const auto look = lookOf(subject->item.view());
    std::visit(Overloaded{
                   [&](const app::PreviewNothing& nothing) {
                       notice_->show(look, QStringLiteral("Náhled pro tento druh není"),
                                     fromUtf8(nothing.reason));
                       body_->setCurrentWidget(notice_);
                   },
                   [&](const app::PreviewText& text) {
                       showText(fromUtf8(text.text), theme_.font(FontRole::fixed), text.isCut);
                   },
                   [&](const app::PreviewBytes& bytes) {
                       const std::size_t perLine = width() >= theme_.px(longHexFrom) ? 16 : 8;
                       showText(PreviewTexts::hex(bytes.bytes, perLine),
                                theme_.font(FontRole::fixed), bytes.isCut);
                   },
                   [&](const app::PreviewList& list) {
                       if (list.items.empty()) {
                           notice_->show(look,
                                         list.folders ? QStringLiteral("Složka je prázdná")
                                                      : QStringLiteral("Archiv je prázdný"),
                                         {});
                           body_->setCurrentWidget(notice_);
                           return;
                       }
                       list_->show(list);
                       body_->setCurrentWidget(list_);
                   },
                   [&](const app::DecodedPicture& picture) {
                       picture_->show(picture);
                       body_->setCurrentWidget(picture_);
                   },
                   [&](const app::DecodedMedia& media) {
                       std::vector<PreviewTexts::Fact> facts;
                       facts.reserve(media.facts.size());
                       for (const auto& [title, value] : media.facts)
                           facts.emplace_back(fromUtf8(title), fromUtf8(value));
                       notice_->show(look, {}, {}, facts);
                       body_->setCurrentWidget(notice_);
                   },
               },
               content);
    showFacts(PreviewTexts::facts(*subject, content));
}

void PreviewView::showText(const QString& text, const QFont& font, bool isCut) {
    text_->setFont(font);
    text_->setPlainText(isCut ? text + QStringLiteral("\n…") : text);
    text_->verticalScrollBar()->setValue(0);
    body_->setCurrentWidget(text_);
}

void PreviewView::showFacts(const std::vector<PreviewTexts::Fact>& facts) {
    facts_ = facts;
    FactRows::clear(*factRows_);
    FactRows::fill(*factRows_, *foot_, facts_, isWide_ ? 2 : 1, theme_);
    placeFoot();
}

void PreviewView::placeFoot() {
    foot_->setVisible(!facts_.empty() && height() >= theme_.px(leastForFacts));
}

/// Screen readers hear what is shown, as nothing of it takes the keyboard.
void PreviewView::tell() {
    QStringList parts;
    for (const auto& [title, value] : facts_)
        parts << QStringLiteral("%1: %2").arg(title, value);
    setAccessibleDescription(parts.join(QStringLiteral(", ")));
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void PreviewView::takeTheme() {
    auto colors = text_->palette();
    colors.setColor(QPalette::Text, theme_.tokens().text);
    text_->setPalette(colors);
    if (const auto& subject = preview_.subject())
        icon_->setPixmap(context_.icons.file(lookOf(subject->item.view()), IconBadge::none,
                                             IconGround::panelInactive, icon_->width(),
                                             devicePixelRatioF()));
    update();
}

void PreviewView::setOpacity(double opacity) {
    auto* effect = static_cast<QGraphicsOpacityEffect*>(graphicsEffect());
    effect->setOpacity(opacity);
    effect->setEnabled(opacity < 1); // at rest nothing is painted twice
}

void PreviewView::resizeEvent(QResizeEvent*) {
    stripe_->setGeometry(1, headerHeight() - 1, width() - 2, 2);
    const bool isWide = width() >= theme_.px(wideFrom);
    hint_->setVisible(isWide);
    word_->setVisible(width() >= theme_.px(leastForWord));
    placeFoot();
    hints_->setVisible(height() >= theme_.px(leastForHints));
    if (std::exchange(isWide_, isWide) != isWide)
        showFacts(std::exchange(facts_, {}));
    showKeys();
}

void PreviewView::wheelEvent(QWheelEvent* event) {
    event->accept(); // nothing behind is to scroll
}

void PreviewView::mousePressEvent(QMouseEvent* event) {
    event->accept();
}

void PreviewView::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF all(rect());
    painter.fillRect(all, tokens.window); // what lies below does not show at the corners
    QPainterPath card;
    card.addRoundedRect(all, radius, radius);
    painter.setClipPath(card);
    painter.fillRect(all, tokens.chrome);
    painter.fillRect(QRectF(body_->geometry()), tokens.panelInactive);
    painter.fillRect(QRectF(0, body_->y() - 1, width(), 1), tokens.line);
    if (!foot_->isHidden())
        painter.fillRect(QRectF(0, foot_->y() - 1, width(), 1), tokens.line);
    painter.fillRect(QRectF(0, hints_->y() - 1, width(), 1), tokens.line);
    painter.setClipping(false);
    painter.setPen(tokens.line);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(all.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
}

} // namespace fennik::ui
