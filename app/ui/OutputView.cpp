#include "app/ui/OutputView.h"

#include "app/model/CommandOutput.h"
#include "app/ui/StyleSheet.h"
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
    auto* bar = verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this, [this, bar] {
        if (!isChanging_)
            follows_ = bar->value() >= bar->maximum();
    });
    // How many lines there are shows only when those in view have been laid out.
    connect(bar, &QScrollBar::rangeChanged, this, &OutputView::followEnd);
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
    showCommand();
}

void OutputView::begin(const QString& command) {
    command_ = command;
    follows_ = true;
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
    isChanging_ = true;
    const QTextCursor top(firstVisibleBlock());
    QTextCursor edit(document());
    edit.beginEditBlock();
    // All behind the text of a block.
    const auto remove = [&edit](const QTextBlock& from, int to) {
        edit.setPosition(from.position() + from.length() - 1);
        edit.setPosition(to, QTextCursor::KeepAnchor);
        edit.removeSelectedText();
    };
    const auto gone = std::min(output.omitted() - std::exchange(omitted_, output.omitted()),
                               std::max<std::int64_t>(lineCount_ - 1, 0));
    if (gone > 0) {
        const auto last = document()->findBlockByNumber(headBlocks_ + int(gone) - 1);
        remove(document()->findBlockByNumber(headBlocks_ - 1), last.position() + last.length() - 1);
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
    const auto end = edit.position();
    if (lineCount_ > 0)
        remove(document()->findBlockByNumber(headBlocks_ + int(kept) - 1), end);
    // One that has only begun would be an empty one below all others.
    const auto last = output.lineCount() - 1;
    const auto count = output.line(last).empty() ? last : last + 1;
    std::string text;
    for (auto index = std::size_t(kept); index < count; ++index)
        text.append("\n").append(output.line(index));
    edit.insertText(fromUtf8(text), plain);
    lineCount_ = std::int64_t(count);
    edit.endEditBlock();
    if (!follows_)
        verticalScrollBar()->setValue(top.block().firstLineNumber());
    isChanging_ = false;
    followEnd();
}

void OutputView::followEnd() {
    if (follows_ && !isChanging_)
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void OutputView::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu;
    wear(menu, theme_, StyleSheet::menus);
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
