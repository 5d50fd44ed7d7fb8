#include "app/ui/dialogs/KeysDialog.h"

#include "app/ui/Text.h"
#include "app/ui/dialogs/KeySheet.h"
#include "core/base/CzechText.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace fennik::ui {

namespace {

constexpr int cardWidth = 1140;
constexpr int fieldGap = 8;

/// The field over the sheet, which alone scrolls.
class Content final : public QWidget {
public:
    Content(QWidget& field, QScrollArea& area, const KeySheet& sheet, int gap)
        : field_(field), sheet_(sheet), gap_(gap) {
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins({});
        layout->setSpacing(gap);
        layout->addWidget(&field);
        layout->addWidget(&area, 1);
    }

    int heightForWidth(int width) const override {
        return field_.sizeHint().height() + gap_ + sheet_.heightForWidth(width);
    }
    bool hasHeightForWidth() const override { return true; }

private:
    QWidget& field_;
    const KeySheet& sheet_;
    int gap_;
};

} // namespace

KeysDialog::KeysDialog(const Theme& theme, Icons& icons, QWidget* parent)
    : DialogCard({.icon = QStringLiteral("keyboard"),
                  .title = QStringLiteral("Klávesové zkratky"),
                  .subtitle = QStringLiteral("Tak, jak právě platí v panelech"),
                  .hint = QStringLiteral("↑↓ posune seznam"),
                  .cancel = QStringLiteral("Zavřít")},
                 theme, icons, parent),
      filter_(new QLineEdit),
      sheet_(new KeySheet(theme, nullptr)),
      area_(new QScrollArea) {
    setPreferredWidth(cardWidth);
    filter_->setObjectName(QStringLiteral("keysFilter"));
    filter_->setAccessibleName(QStringLiteral("Hledat příkaz nebo zkratku"));
    filter_->setPlaceholderText(QStringLiteral("Hledat příkaz nebo zkratku"));
    filter_->setFont(theme.font(FontRole::body));
    filter_->installEventFilter(this);
    connect(filter_, &QLineEdit::textChanged, this, &KeysDialog::look);
    area_->setObjectName(QStringLiteral("keysArea"));
    area_->setFrameShape(QFrame::NoFrame);
    area_->setFocusPolicy(Qt::NoFocus);
    area_->setWidgetResizable(true);
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area_->setMinimumHeight(theme.px(60));
    area_->setWidget(sheet_);
    for (auto* ground : {area_->viewport(), static_cast<QWidget*>(sheet_)})
        ground->setAutoFillBackground(false);
    setContent(new Content(*filter_, *area_, *sheet_, theme.px(fieldGap)));
}

void KeysDialog::setGroups(const std::vector<Group>& groups) {
    sheet_->setGroups(groups);
    look();
    emit heightChanged();
}

void KeysDialog::look() {
    const int count = sheet_->look(filter_->text());
    const auto noun = pluralForm(count, {"příkaz", "příkazy", "příkazů"});
    filter_->setAccessibleDescription(
        QStringLiteral("Vidět je %1 %2").arg(count).arg(fromUtf8(noun)));
    area_->verticalScrollBar()->setValue(0);
}

bool KeysDialog::eventFilter(QObject* watched, QEvent* event) {
    if (watched == filter_ && event->type() == QEvent::KeyPress) {
        auto* bar = area_->verticalScrollBar();
        const auto scroll = [bar](QAbstractSlider::SliderAction action) {
            bar->triggerAction(action);
            return true;
        };
        switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Up:
            return scroll(QAbstractSlider::SliderSingleStepSub);
        case Qt::Key_Down:
            return scroll(QAbstractSlider::SliderSingleStepAdd);
        case Qt::Key_PageUp:
            return scroll(QAbstractSlider::SliderPageStepSub);
        case Qt::Key_PageDown:
            return scroll(QAbstractSlider::SliderPageStepAdd);
        default:
            break;
        }
    }
    return DialogCard::eventFilter(watched, event);
}

} // namespace fennik::ui
