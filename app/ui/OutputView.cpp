#include "app/ui/OutputView.h"

#include "app/model/CommandOutput.h"
#include "app/ui/Text.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPlainTextDocumentLayout>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

#include <algorithm>
#include <utility>

namespace fennik::ui {

namespace {

/// Lines of another height than the font's own.
class SpacedLayout final : public QPlainTextDocumentLayout {
public:
    SpacedLayout(const Theme& theme, QTextDocument* document)
        : QPlainTextDocumentLayout(document), theme_(theme) {}

    QRectF blockBoundingRect(const QTextBlock& block) const override {
        const auto natural = QPlainTextDocumentLayout::blockBoundingRect(block);
        const auto* layout = block.layout();
        const int count = layout == nullptr ? 0 : layout->lineCount();
        if (count == 0 || !block.isVisible())
            return natural;
        const double lineHeight = theme_.px(17);
        double textHeight = 0;
        for (int i = 0; i < count; ++i) {
            auto line = layout->lineAt(i);
            const double space = lineHeight - line.height();
            line.setPosition({line.x(), i * lineHeight + space / 2});
            textHeight = line.y() + line.height();
        }
        const auto spaced = QPlainTextDocumentLayout::blockBoundingRect(block);
        return spaced.adjusted(0, 0, 0, count * lineHeight - textHeight);
    }

private:
    const Theme& theme_;
};

} // namespace

OutputView::OutputView(const Theme& theme, QWidget* parent)
    : QPlainTextEdit(parent), theme_(theme) {
    setObjectName(QStringLiteral("outputText"));
    setAccessibleName(QStringLiteral("Výstup příkazu"));
    auto* text = new QTextDocument(this);
    text->setDocumentLayout(new SpacedLayout(theme, text));
    text->setDocumentMargin(0);
    setDocument(text);
    setFrameShape(QFrame::NoFrame);
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setFocusPolicy(Qt::StrongFocus);
    // As a terminal does, so that columns stay columns.
    setWordWrapMode(QTextOption::WrapAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(&theme_, &Theme::changed, this, &OutputView::takeTheme);
    takeTheme();
}

void OutputView::takeTheme() {
    const auto font = theme_.font(FontRole::fixedLine);
    document()->setDefaultFont(font);
    setFont(font);
    setTabStopDistance(8 * QFontMetricsF(font).horizontalAdvance(QLatin1Char('x')));
    setViewportMargins(theme_.px(14), theme_.px(8), theme_.px(6), theme_.px(6));
    auto colours = palette();
    colours.setColor(QPalette::Base, theme_.tokens().field);
    colours.setColor(QPalette::Text, theme_.tokens().text);
    setPalette(colours);
    verticalScrollBar()->setStyleSheet(theme_.styleSheet());
    showCommand();
}

void OutputView::begin(const QString& command) {
    command_ = command;
    setPlainText({});
    headBlocks_ = 1;
    omitted_ = 0;
    lineCount_ = 0;
    showCommand();
}

void OutputView::showCommand() {
    QTextCharFormat format;
    format.setForeground(theme_.tokens().accentText);
    format.setFontWeight(QFont::Bold);
    QTextCursor head(document());
    head.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    head.insertText(QStringLiteral("$ ") + command_, format);
}

void OutputView::showOutput(const app::CommandOutput& output) {
    const bool follows = isAtEnd();
    QTextCursor top(firstVisibleBlock());
    QTextCursor edit(document());
    edit.beginEditBlock();
    const auto remove = [&edit](const QTextBlock& from, int to) {
        edit.setPosition(from.position());
        edit.setPosition(to, QTextCursor::KeepAnchor);
        edit.removeSelectedText();
    };
    const auto gone = std::min(output.omitted() - std::exchange(omitted_, output.omitted()),
                               std::max<std::int64_t>(lineCount_ - 1, 0));
    if (gone > 0) {
        const auto first = document()->findBlockByNumber(headBlocks_);
        remove(first, document()->findBlockByNumber(headBlocks_ + int(gone)).position());
        lineCount_ -= gone;
    }
    QTextCharFormat plain;
    plain.setFontWeight(QFont::Normal);
    if (omitted_ > 0 && headBlocks_ == 1) {
        edit.setPosition(document()->firstBlock().length() - 1);
        edit.insertText(QLatin1Char('\n') + fromUtf8(app::CommandOutput::omission), plain);
        ++headBlocks_;
    }
    // The last line may have been overwritten since, and is shown anew.
    const auto kept = std::max<std::int64_t>(lineCount_ - 1, 0);
    edit.movePosition(QTextCursor::End);
    if (lineCount_ > 0) {
        remove(document()->findBlockByNumber(headBlocks_ + int(kept)), edit.position());
    } else {
        edit.insertBlock({}, plain);
    }
    std::string text;
    for (auto index = std::size_t(kept); index < output.lineCount(); ++index)
        text.append(index == std::size_t(kept) ? "" : "\n").append(output.line(index));
    edit.insertText(fromUtf8(text), plain);
    lineCount_ = std::int64_t(output.lineCount());
    edit.endEditBlock();
    if (follows)
        goToEnd();
    else
        verticalScrollBar()->setValue(top.block().firstLineNumber());
}

bool OutputView::isAtEnd() const {
    return verticalScrollBar()->value() >= verticalScrollBar()->maximum();
}

void OutputView::goToEnd() {
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void OutputView::resizeEvent(QResizeEvent* event) {
    const bool follows = isAtEnd();
    QPlainTextEdit::resizeEvent(event);
    if (follows)
        goToEnd();
}

void OutputView::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu;
    menu.setStyleSheet(theme_.styleSheet());
    auto* copied = menu.addAction(QStringLiteral("Kopírovat"), this, &QPlainTextEdit::copy);
    copied->setEnabled(textCursor().hasSelection());
    menu.addAction(QStringLiteral("Vybrat vše"), this, &QPlainTextEdit::selectAll);
    menu.exec(event->globalPos());
}

void OutputView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier)
        emit escaped();
    else
        QPlainTextEdit::keyPressEvent(event);
}

} // namespace fennik::ui
