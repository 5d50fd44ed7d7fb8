#include "app/ui/dialogs/TipsDialog.h"

#include "app/ui/KeyCapStrip.h"
#include "app/ui/dialogs/LabelColor.h"

#include <QGridLayout>
#include <QLabel>

#include <utility>

namespace fennik::ui {

namespace {

constexpr int cardWidth = 640;
constexpr int keysWidth = 96;
constexpr int keysGap = 12;
constexpr int rowGap = 12;

} // namespace

TipsDialog::TipsDialog(std::vector<Page> pages, const Theme& theme, Icons& icons, QWidget* parent)
    : DialogCard({.frame = Frame::portrait,
                  .title = QStringLiteral("Vítejte ve Fenniku"),
                  .subtitle = QStringLiteral(
                      "Dva panely, všechno z klávesnice. Nic se nikdy nesmaže natvrdo."),
                  .hintIcon = QStringLiteral("lightbulb"),
                  .hint = QStringLiteral("Tipy najdete i v nabídce Nápověda."),
                  .other = QStringLiteral("Další tip"),
                  .confirm = QStringLiteral("Začít"),
                  .cancel = {}},
                 theme, icons, parent),
      pages_(std::move(pages)) {
    setPreferredWidth(cardWidth);
    connect(this, &DialogCard::confirmed, this, &DialogCard::cancelled);
    connect(this, &DialogCard::otherRequested, this, [this] {
        page_ = (page_ + 1) % pages_.size();
        showPage();
    });
    showPage();
}

void TipsDialog::showPage() {
    auto* content = new QWidget;
    auto* grid = new QGridLayout(content);
    grid->setContentsMargins({});
    grid->setHorizontalSpacing(theme().px(keysGap));
    grid->setVerticalSpacing(theme().px(rowGap));
    grid->setColumnMinimumWidth(0, theme().px(keysWidth));
    grid->setColumnStretch(1, 1);
    int row = 0;
    for (const auto& [keys, sentence] : pages_[page_]) {
        auto* caps = new KeyCapStrip(keys, theme(), nullptr);
        auto* text = new QLabel(sentence);
        text->setObjectName(QStringLiteral("tipSentence"));
        text->setWordWrap(true);
        text->setFont(theme().font(FontRole::body));
        followColor(*text, theme(), &Tokens::text);
        grid->addWidget(caps, row, 0, Qt::AlignRight | Qt::AlignVCenter);
        grid->addWidget(text, row, 1);
        ++row;
    }
    setContent(content);
    emit heightChanged();
}

} // namespace fennik::ui
