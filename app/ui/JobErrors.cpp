#include "app/ui/JobErrors.h"

#include "app/ui/Text.h"

#include <QKeyEvent>
#include <QTextBlock>

#include <algorithm>
#include <cmath>

namespace fennik::ui {

namespace {

constexpr int mostLines = 8;
constexpr double padding = 9;

} // namespace

JobErrors::JobErrors(const Theme& theme, QWidget* parent) : QPlainTextEdit(parent), theme_(theme) {
    setObjectName(QStringLiteral("jobErrors"));
    setAccessibleName(QStringLiteral("Chyby"));
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setFocusPolicy(Qt::ClickFocus);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    document()->setDocumentMargin(0);
    connect(&theme_, &Theme::changed, this, &JobErrors::takeTheme);
    takeTheme();
}

void JobErrors::takeTheme() {
    const auto& tokens = theme_.tokens();
    setFont(theme_.font(FontRole::detail));
    auto colors = palette();
    colors.setColor(QPalette::Base, tokens.errSoft);
    colors.setColor(QPalette::Text, tokens.err);
    colors.setColor(QPalette::Highlight, tokens.err);
    colors.setColor(QPalette::HighlightedText, tokens.errSoft);
    setPalette(colors);
    viewport()->setAutoFillBackground(false);
    setViewportMargins(theme_.px(56), theme_.px(padding), theme_.px(9), theme_.px(padding));
}

void JobErrors::setErrors(const std::vector<std::string>& errors) {
    // Only what has come is added, so that neither a selection nor a place is lost.
    const auto shown = std::min(errors.size(), mostShown);
    for (auto next = std::min(count_, mostShown); next < shown; ++next)
        appendPlainText(fromUtf8(errors[next]));
    if (errors.size() > mostShown && errors.size() != count_) {
        const auto rest =
            QStringLiteral("a další %1").arg(static_cast<qulonglong>(errors.size() - mostShown));
        if (count_ <= mostShown) {
            appendPlainText(rest);
        } else {
            QTextCursor last(document()->lastBlock());
            last.select(QTextCursor::BlockUnderCursor);
            last.insertText(QLatin1Char('\n') + rest);
        }
    }
    count_ = errors.size();
    updateGeometry();
}

int JobErrors::heightForWidth(int) const {
    int lines = 0;
    double height = 0;
    auto* layout = document()->documentLayout();
    for (auto block = document()->begin(); block.isValid() && lines < mostLines;
         block = block.next()) {
        height += layout->blockBoundingRect(block).height();
        lines += block.layout()->lineCount();
    }
    // Without something to spare the view takes the last line for cut off.
    return int(std::ceil(height)) + fontMetrics().descent() + 2 * theme_.px(padding);
}

void JobErrors::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_Tab)
        emit left();
    else
        QPlainTextEdit::keyPressEvent(event);
}

} // namespace fennik::ui
