#include "app/ui/PanelMessage.h"

#include "app/ui/KeyButton.h"
#include "app/ui/PlatformWords.h"
#include "app/ui/Text.h"
#include "core/base/CzechText.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include <utility>

namespace fennik::ui {

namespace {

using Failure = FolderOpener::Failure;

/// `text` with places to break in words too long for a line, as file names may be.
QString breakable(const QString& text) {
    constexpr qsizetype longWord = 24;
    constexpr QChar zeroWidthSpace(0x200B);
    QString result;
    qsizetype wordLength = 0;
    for (const auto character : text) {
        wordLength = character.isSpace() ? 0 : wordLength + 1;
        if (wordLength > longWord && !character.isLowSurrogate() && !character.isMark())
            result += zeroWidthSpace;
        result += character;
    }
    return result;
}

} // namespace

PanelMessage::PanelMessage(const UiContext& context, app::PanelModel& panel, QWidget* parent)
    : QWidget(parent),
      context_(context),
      panel_(panel),
      theme_(context.theme),
      icons_(context.icons),
      tile_(new QWidget(this)),
      text_(new QLabel(this)),
      hint_(new QLabel(this)),
      answers_(new QWidget(this)),
      buttons_(new QBoxLayout(QBoxLayout::LeftToRight, answers_)),
      retry_(new KeyButton(QStringLiteral("Zkusit znovu"), {}, theme_, answers_)),
      leave_(new KeyButton(QStringLiteral("Zpět"), {}, theme_, answers_)),
      upwards_(new KeyButton(QStringLiteral("O úroveň výš"), {}, theme_, answers_)),
      newFolder_(new KeyButton(QStringLiteral("Nová složka"), {}, theme_, answers_)),
      paste_(new KeyButton(QStringLiteral("Vložit"), {}, theme_, answers_)) {
    setObjectName(QStringLiteral("panelMessage"));
    tile_->setFixedSize(theme_.px(60), theme_.px(60));
    text_->setObjectName(QStringLiteral("panelMessageText"));
    text_->setAlignment(Qt::AlignCenter);
    text_->setWordWrap(true);
    text_->setTextFormat(Qt::PlainText);
    text_->setMaximumWidth(theme_.px(360));
    hint_->setTextFormat(Qt::PlainText);
    hint_->setAlignment(Qt::AlignCenter);
    hint_->setFont(theme_.font(FontRole::detail));

    buttons_->setContentsMargins({});
    buttons_->setSpacing(theme_.px(8));
    for (auto* button : {retry_, leave_, upwards_, newFolder_, paste_})
        buttons_->addWidget(button);
    // The text takes what room there is up to its greatest width, and stands in the middle.
    auto* textRow = new QHBoxLayout;
    textRow->addStretch(1);
    textRow->addWidget(text_, 1000);
    textRow->addStretch(1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(theme_.px(24), 0, theme_.px(24), 0);
    layout->addStretch(2);
    layout->addWidget(tile_, 0, Qt::AlignHCenter);
    layout->addSpacing(theme_.px(12));
    layout->addLayout(textRow);
    layout->addWidget(hint_);
    layout->addSpacing(theme_.px(8));
    layout->addWidget(answers_, 0, Qt::AlignHCenter);
    layout->addStretch(3);

    for (auto* button : {retry_, leave_, upwards_, newFolder_, paste_})
        connect(button, &QAbstractButton::clicked, this, &PanelMessage::answered);
    connect(retry_, &QAbstractButton::clicked, &panel_, &app::PanelModel::refresh);
    connect(leave_, &QAbstractButton::clicked, &panel_, &app::PanelModel::escape);
    connect(upwards_, &QAbstractButton::clicked, &panel_, &app::PanelModel::goToParent);
    // By then the answer has brought the keyboard here.
    for (const auto& [button, action] :
         {std::pair(newFolder_, app::KAction::newFolder), std::pair(paste_, app::KAction::paste)})
        connect(button, &QAbstractButton::clicked, &context_.app,
                [&app = context_.app, action = action] { app.perform(action); });
    connect(&context_.shortcuts, &app::ShortcutStore::changed, this, &PanelMessage::takePanel);
    takePanel();
}

PanelMessage::Content PanelMessage::content() const {
    if (panel_.error())
        return Content::failure;
    const auto& items = panel_.items();
    const bool onlyParent = items.size() == 1 && items.view(0).isParentLink;
    return onlyParent ? Content::emptyFolder : Content::nothing;
}

void PanelMessage::takePanel() {
    const auto keys = context_.keys();
    retry_->setTitle(retry_->text(), keys.of(app::KAction::open));
    leave_->setTitle(leave_->text(), keys.of(app::KAction::escape));
    upwards_->setTitle(upwards_->text(), keys.of(app::KAction::parent));
    newFolder_->setTitle(newFolder_->text(), keys.of(app::KAction::newFolder));
    paste_->setTitle(paste_->text(), keys.of(app::KAction::paste));
    const auto what = content();
    if (const auto& error = panel_.error())
        showFailure(*error);
    else if (what == Content::emptyFolder)
        showEmptyFolder();
    const bool isOwn = panel_.ownFolderFailed();
    const bool isFailure = what == Content::failure;
    retry_->setVisible(isFailure);
    leave_->setVisible(isFailure && !isOwn);
    upwards_->setVisible(isFailure && isOwn && !panel_.folder().isRoot());
    for (auto* button : {newFolder_, paste_})
        button->setVisible(what == Content::emptyFolder && !panel_.archive());
    hint_->setVisible(!hint_->text().isEmpty());
    setVisible(what != Content::nothing);

    auto colors = palette();
    colors.setColor(QPalette::WindowText, theme_.tokens().text);
    text_->setPalette(colors);
    colors.setColor(QPalette::WindowText, theme_.tokens().text2);
    hint_->setPalette(colors);
    fit();
    update();
}

void PanelMessage::fit() {
    tile_->show();
    answers_->show();
    buttons_->setDirection(QBoxLayout::LeftToRight);
    const auto margins = layout()->contentsMargins();
    if (buttons_->sizeHint().width() > width() - margins.left() - margins.right())
        buttons_->setDirection(QBoxLayout::TopToBottom);
    // What matters least gives way first: the buttons name keys that do the same.
    for (auto* part : {tile_, answers_}) {
        if (layout()->minimumHeightForWidth(width()) > height())
            part->hide();
    }
}

void PanelMessage::resizeEvent(QResizeEvent*) {
    fit();
}

void PanelMessage::setGround(const QColor& rows) {
    ground_ = rows;
    update();
}

void PanelMessage::showFailure(const Failure& failure) {
    const auto& tokens = theme_.tokens();
    switch (failure.kind) {
    case Failure::Case::noPermission:
        icon_ = QStringLiteral("folder-lock");
        iconColor_ = tokens.warn;
        break;
    case Failure::Case::notFound:
        icon_ = QStringLiteral("unplug");
        iconColor_ = tokens.err;
        break;
    case Failure::Case::unreadable:
        icon_ = QStringLiteral("circle-alert");
        iconColor_ = tokens.err;
        break;
    }
    const auto message = PlatformWords::failureMessage(failure);
    text_->setText(breakable(message));
    text_->setAccessibleName(message);
    hint_->clear();
}

void PanelMessage::showEmptyFolder() {
    icon_ = QStringLiteral("folder-open");
    iconColor_ = theme_.tokens().text2;
    const bool isArchive = panel_.archive() && panel_.archive()->inner.empty();
    text_->setText(isArchive ? QStringLiteral("Archiv je prázdný")
                             : QStringLiteral("Složka je prázdná"));
    text_->setAccessibleName(text_->text());
    const auto hidden = static_cast<std::int64_t>(panel_.rawItems().size());
    if (hidden == 0) {
        hint_->clear();
        return;
    }
    const auto noun = pluralForm(hidden, {"skrytý soubor", "skryté soubory", "skrytých souborů"});
    hint_->setText(QStringLiteral("%1 %2 ukáže %3")
                       .arg(hidden)
                       .arg(fromUtf8(noun), context_.keys().of(app::KAction::toggleHidden)));
}

void PanelMessage::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    // A failure stands in place of the whole table, its header included.
    if (content() == Content::failure)
        painter.fillRect(rect(), ground_);
    if (tile_->isHidden())
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme_.tokens().hover);
    painter.drawRoundedRect(tile_->geometry(), 12, 12);
    const int side = theme_.px(30);
    const auto middle = tile_->geometry().center();
    painter.drawPixmap(middle.x() - side / 2 + 1, middle.y() - side / 2 + 1,
                       icons_.line(icon_, side, iconColor_, devicePixelRatioF()));
}

} // namespace fennik::ui
