#include "app/ui/dialogs/LinesDialog.h"

#include "app/ui/Text.h"
#include "core/base/CzechText.h"

#include <QPlainTextEdit>

#include <algorithm>

namespace fennik::ui {

namespace {

constexpr int leastLines = 4;
constexpr int mostLines = 14;

QString lineCount(qsizetype count) {
    const auto noun = pluralForm(count, {"zpráva", "zprávy", "zpráv"});
    return QStringLiteral("%1 %2").arg(count).arg(fromUtf8(noun));
}

} // namespace

LinesDialog::LinesDialog(const QString& text, const Theme& theme, Icons& icons, QWidget* parent)
    : LinesDialog(QStringLiteral("Podrobnosti"), lineCount(text.count(QLatin1Char('\n')) + 1), text,
                  theme, icons, parent) {}

LinesDialog::LinesDialog(const QString& title, const QString& subtitle, const QString& text,
                         const Theme& theme, Icons& icons, QWidget* parent)
    : DialogCard({.icon = QStringLiteral("info"),
                  .title = title,
                  .subtitle = subtitle,
                  .cancel = QStringLiteral("Zavřít")},
                 theme, icons, parent) {
    auto* lines = new QPlainTextEdit(text);
    lines->setObjectName(QStringLiteral("dialogLines"));
    lines->setAccessibleName(title);
    lines->setReadOnly(true);
    lines->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    lines->setTabChangesFocus(true);
    lines->setFrameShape(QFrame::NoFrame);
    lines->setFont(theme.font(FontRole::body));
    lines->viewport()->setAutoFillBackground(false);
    lines->document()->setDocumentMargin(0);
    // A line may break, so there is room for more of them.
    const int count = std::clamp(2 * lines->blockCount(), leastLines, mostLines);
    lines->setFixedHeight(count * lines->fontMetrics().lineSpacing());
    const auto takeTheme = [lines, &theme] {
        auto colors = lines->palette();
        colors.setColor(QPalette::Text, theme.tokens().text);
        lines->setPalette(colors);
    };
    connect(&theme, &Theme::changed, lines, takeTheme);
    takeTheme();
    setContent(lines);
    setPreferredWidth(largeWidth);
}

} // namespace fennik::ui
