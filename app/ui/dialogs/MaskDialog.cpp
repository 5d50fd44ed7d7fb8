#include "app/ui/dialogs/MaskDialog.h"

#include "app/ui/Text.h"
#include "app/ui/dialogs/Chip.h"
#include "app/ui/dialogs/LabelColor.h"
#include "app/ui/dialogs/OutcomeLine.h"
#include "core/base/CzechText.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include <algorithm>

namespace fennik::ui {

namespace {

constexpr qsizetype mostRecents = 5;

DialogCard::Texts textsOf(MaskDialog::Purpose purpose, const QString& subtitle) {
    const bool marks = purpose == MaskDialog::Purpose::mark;
    return {.icon = marks ? QStringLiteral("circle-plus") : QStringLiteral("circle-minus"),
            .title = marks ? QStringLiteral("Označit podle masky")
                           : QStringLiteral("Odznačit podle masky"),
            .subtitle = subtitle,
            .confirm = marks ? QStringLiteral("Označit") : QStringLiteral("Odznačit")};
}

} // namespace

MaskDialog::MaskDialog(Purpose purpose, const QString& subtitle, const QStringList& recents,
                       const Theme& theme, Icons& icons, QWidget* parent)
    : DialogCard(textsOf(purpose, subtitle), theme, icons, parent),
      recents_(recents.mid(0, mostRecents)),
      field_(new QLineEdit),
      chipRow_(new QWidget),
      matches_(new OutcomeLine(theme, icons, nullptr)) {
    field_->setObjectName(QStringLiteral("maskField"));
    field_->setAccessibleName(QStringLiteral("Maska"));
    field_->setFont(theme.font(FontRole::fixedField));
    field_->installEventFilter(this);
    for (const auto& recent : recents_) {
        auto* chip = new Chip(recent, theme, chipRow_);
        const auto index = qsizetype(chips_.size());
        connect(chip, &QAbstractButton::clicked, this, [this, index] { fill(index); });
        chips_.push_back(chip);
    }
    chipRow_->setFixedHeight(theme.px(24));
    chipRow_->setHidden(chips_.empty());
    auto* hint = new QLabel(
        QStringLiteral("Více masek oddělte středníkem. * = cokoli, ? = jeden znak, velikost "
                       "písmen nevadí. „*/“ = jen složky."));
    hint->setObjectName(QStringLiteral("maskHint"));
    hint->setFont(theme.font(FontRole::detail));
    hint->setWordWrap(true);
    followColor(*hint, theme, &Tokens::text2);

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins({});
    layout->setSpacing(theme.px(8));
    layout->addWidget(field_);
    layout->addWidget(chipRow_);
    layout->addWidget(matches_);
    layout->addWidget(hint);
    setContent(content);

    connect(this, &DialogCard::confirmed, this, [this] { emit maskConfirmed(mask()); });
    connect(field_, &QLineEdit::textChanged, this, &MaskDialog::takeText);
    if (!recents_.isEmpty())
        field_->setText(recents_.front());
    setConfirmable(!mask().trimmed().isEmpty());
}

QString MaskDialog::mask() const {
    return field_->text();
}

void MaskDialog::setMask(const QString& mask) {
    field_->setText(mask);
}

void MaskDialog::setMatches(std::int64_t count, const QString& size) {
    QString text;
    if (count == 0) {
        text = QStringLiteral("Neodpovídá žádná položka");
    } else {
        const auto verb = pluralForm(count, {"Odpovídá", "Odpovídají", "Odpovídá"});
        text = fromUtf8(verb) + QLatin1Char(' ') + itemCount(count);
        if (!size.isEmpty())
            text += QStringLiteral(", ") + size;
    }
    matches_->setOutcome(count > 0 ? OutcomeLine::Kind::ok : OutcomeLine::Kind::note, text);
    field_->setAccessibleDescription(text);
}

void MaskDialog::fill(qsizetype recent) {
    shownRecent_ = recent;
    field_->setText(recents_[recent]);
    field_->selectAll();
}

void MaskDialog::takeText() {
    setConfirmable(!mask().trimmed().isEmpty());
    emit maskChanged(mask());
}

bool MaskDialog::eventFilter(QObject* watched, QEvent* event) {
    if (watched == field_ && event->type() == QEvent::KeyPress && !recents_.isEmpty()) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Down || key == Qt::Key_Up) {
            // What was typed is no recent mask: the first step leads back to the one it began with.
            const bool isShown = mask() == recents_[shownRecent_];
            const auto step = !isShown ? 0 : key == Qt::Key_Down ? 1 : -1;
            fill(std::clamp<qsizetype>(shownRecent_ + step, 0, recents_.size() - 1));
            return true;
        }
    }
    return DialogCard::eventFilter(watched, event);
}

void MaskDialog::resizeEvent(QResizeEvent* event) {
    DialogCard::resizeEvent(event);
    layOutChips();
}

void MaskDialog::layOutChips() {
    // Those for which there is no room are still reached by the arrows.
    const int room = width() - 2 * theme().px(20);
    int left = 0;
    for (auto* chip : chips_) {
        const auto size = chip->sizeHint();
        chip->setGeometry(left, 0, size.width(), size.height());
        chip->setVisible(left + size.width() <= room);
        left += size.width() + theme().px(6);
    }
}

} // namespace fennik::ui
