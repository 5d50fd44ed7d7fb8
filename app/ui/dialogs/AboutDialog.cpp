#include "app/ui/dialogs/AboutDialog.h"

#include "app/ui/IconButton.h"
#include "app/ui/KeyButton.h"
#include "app/ui/KeyCaps.h"
#include "app/ui/dialogs/LabelColor.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QSysInfo>
#include <QVBoxLayout>

namespace fennik::ui {

namespace {

constexpr int cardWidth = 400;
constexpr int portraitSide = 92;
constexpr int textWidth = 340;

/// The head of a little window: its title between two equal margins.
class Head final : public QWidget {
public:
    Head(const QString& title, IconButton* close, const Theme& theme) : theme_(theme) {
        auto* text = new QLabel(title);
        text->setAlignment(Qt::AlignCenter);
        text->setFont(theme.font(FontRole::detail, QFont::DemiBold));
        followColor(*text, theme, &Tokens::text2);
        auto* layout = new QHBoxLayout(this);
        layout->setContentsMargins(theme.px(34), theme.px(3), theme.px(6), theme.px(3));
        layout->setSpacing(0);
        layout->addWidget(text, 1);
        close->setFixedSize(theme.px(28), theme.px(28));
        layout->addWidget(close);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme_.tokens().window);
        // Round where the card is; the rest lies below the edge.
        constexpr double radius = 11;
        painter.setClipRect(rect());
        painter.drawRoundedRect(QRectF(rect()).adjusted(0, 0, 0, radius), radius, radius);
        painter.fillRect(0, height() - 1, width(), 1, theme_.tokens().line);
    }

private:
    const Theme& theme_;
};

QLabel* paragraph(const QString& text, FontRole role, QFont::Weight weight, QColor Tokens::* color,
                  const Theme& theme) {
    auto* label = new QLabel(text);
    label->setAlignment(Qt::AlignCenter);
    label->setFont(theme.font(role, weight));
    label->setWordWrap(true);
    followColor(*label, theme, color);
    return label;
}

QString versionText() {
    return QStringLiteral("verze %1").arg(QApplication::applicationVersion());
}

} // namespace

AboutDialog::AboutDialog(const Theme& theme, Icons& icons, QWidget* parent)
    : DialogCard({.frame = Frame::bare,
                  .title = QStringLiteral("O aplikaci Fennik"),
                  .subtitle = versionText(),
                  .cancel = {}},
                 theme, icons, parent),
      copy_(new KeyButton(QStringLiteral("Kopírovat údaje"), {}, theme, nullptr)) {
    setPreferredWidth(cardWidth);
    auto* content = new QWidget;
    auto* rows = new QVBoxLayout(content);
    rows->setContentsMargins({});
    rows->setSpacing(0);
    auto* close = new IconButton(QStringLiteral("x"), QStringLiteral("Zavřít"), KeyCaps::escape,
                                 theme, icons, nullptr);
    close->setFocusPolicy(Qt::NoFocus);
    connect(close, &QAbstractButton::clicked, this, &DialogCard::cancelled);
    rows->addWidget(new Head(QStringLiteral("O aplikaci"), close, theme));

    auto* portrait = new QLabel;
    portrait->setAlignment(Qt::AlignCenter);
    portrait->setAccessibleName(QStringLiteral("Ikona aplikace Fennik"));
    portrait->setPixmap(icons.program(theme.px(portraitSide), devicePixelRatioF()));
    auto* name = paragraph(QStringLiteral("Fennik"), FontRole::headline, QFont::DemiBold,
                           &Tokens::text, theme);
    auto* version =
        paragraph(versionText(), FontRole::detail, QFont::Normal, &Tokens::text3, theme);
    auto* sentence = paragraph(
        QStringLiteral("Dvoupanelový správce souborů, který se řídí hlavně z klávesnice."),
        FontRole::body, QFont::Normal, &Tokens::text2, theme);
    auto* parts = paragraph(
        QStringLiteral("Používá Qt (LGPL), libarchive (BSD), ICU (Unicode), JSON for Modern C++ "
                       "(MIT), Poppler (GPL), MediaInfo (BSD), Inter (OFL) a Lucide (ISC)."),
        FontRole::detail, QFont::Normal, &Tokens::text3, theme);
    auto* texts = new QVBoxLayout;
    texts->setContentsMargins(theme.px(30), theme.px(28), theme.px(30), theme.px(26));
    texts->setSpacing(0);
    const auto add = [&](QWidget* widget, double gapAbove) {
        texts->addSpacing(theme.px(gapAbove));
        texts->addWidget(widget);
    };
    add(portrait, 0);
    add(name, 14);
    add(version, 1);
    add(sentence, 14);
    add(parts, 12);
    for (auto* text : {sentence, parts})
        text->setMaximumWidth(theme.px(textWidth));

    auto* licenses = new KeyButton(QStringLiteral("Licence"), {}, theme, nullptr);
    licenses->setObjectName(QStringLiteral("aboutLicenses"));
    copy_->setObjectName(QStringLiteral("aboutCopy"));
    copy_->setLineIcon(QStringLiteral("copy"), icons, &Tokens::text2);
    connect(licenses, &QAbstractButton::clicked, this, &AboutDialog::licensesRequested);
    connect(copy_, &QAbstractButton::clicked, this, &AboutDialog::copyFacts);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(theme.px(8));
    buttons->addStretch(1);
    for (auto* button : {licenses, copy_}) {
        button->setFocusPolicy(Qt::StrongFocus);
        buttons->addWidget(button);
    }
    buttons->addStretch(1);
    texts->addSpacing(theme.px(22));
    texts->addLayout(buttons);
    rows->addLayout(texts);
    setContent(content);
}

void AboutDialog::copyFacts() {
    const auto desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP", QStringLiteral("neznámé"));
    QApplication::clipboard()->setText(
        QStringLiteral("Fennik %1\nQt %2\nSystém: %3 %4, %5\nProstředí: %6, %7\n")
            .arg(QApplication::applicationVersion(), QString::fromLatin1(qVersion()),
                 QSysInfo::kernelType(), QSysInfo::kernelVersion(),
                 QSysInfo::currentCpuArchitecture(), desktop, QApplication::platformName()));
    copy_->setLineIcon(QStringLiteral("check"), icons());
    copy_->setTitle(QStringLiteral("Zkopírováno"), {});
}

} // namespace fennik::ui
