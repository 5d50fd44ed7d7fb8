#include "app/ui/dialogs/QuitDialog.h"

#include "app/ui/dialogs/LabelColor.h"

#include <QLabel>

namespace fennik::ui {

QuitDialog::QuitDialog(const QString& summary, const Theme& theme, Icons& icons, QWidget* parent)
    : DialogCard({.icon = QStringLiteral("triangle-alert"),
                  .tone = Tone::caution,
                  .title = QStringLiteral("Zrušit operace a skončit?"),
                  .subtitle = summary,
                  .confirm = QStringLiteral("Zrušit operace a skončit"),
                  .cancel = QStringLiteral("Nekončit")},
                 theme, icons, parent) {
    auto* text = new QLabel(
        QStringLiteral("Co je hotové, zůstane na svém místě, a rozpracovaný soubor se uklidí. "
                       "Vrátit hotové už po skončení nepůjde."));
    text->setFont(theme.font(FontRole::body));
    text->setWordWrap(true);
    followColor(*text, theme, &Tokens::text);
    setContent(text);
}

} // namespace fennik::ui
