#include "app/ui/dialogs/TrashDialog.h"

#include "app/ui/dialogs/CheckBox.h"
#include "app/ui/dialogs/LabelColor.h"

#include <QLabel>
#include <QVBoxLayout>

namespace fennik::ui {

TrashDialog::TrashDialog(const SourceItems& items, const QString& subtitle, const QString& hint,
                         const Theme& theme, Icons& icons, QWidget* parent)
    : DialogCard({.icon = QStringLiteral("trash-2"),
                  .title = QStringLiteral("Přesunout %1 do Koše?").arg(items.inWords()),
                  .subtitle = subtitle,
                  .confirm = QStringLiteral("Do Koše")},
                 theme, icons, parent),
      noMore_(new CheckBox(QStringLiteral("Příště se neptat"), theme, nullptr)) {
    noMore_->setObjectName(QStringLiteral("askNoMore"));
    auto* wayBack = new QLabel(hint);
    wayBack->setObjectName(QStringLiteral("trashHint"));
    wayBack->setFont(theme.font(FontRole::detail));
    wayBack->setWordWrap(true);
    followColor(*wayBack, theme, &Tokens::text2);

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins({});
    layout->setSpacing(theme.px(9));
    layout->addWidget(new SourceList(items, theme, icons, nullptr));
    layout->addWidget(wayBack);
    layout->addWidget(noMore_);
    setContent(content);
}

bool TrashDialog::asksNextTime() const {
    return !noMore_->isChecked();
}

} // namespace fennik::ui
