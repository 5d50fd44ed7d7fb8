#include "app/ui/PathField.h"

#include "app/ui/ErrorStrip.h"
#include "app/ui/FieldState.h"
#include "app/ui/KeyCaps.h"
#include "app/ui/StyleSheet.h"
#include "app/ui/SuggestionList.h"
#include "app/ui/Text.h"
#include "core/base/FoldedText.h"
#include "core/base/PathText.h"
#include "core/base/WhiteSpace.h"

#include <QKeyEvent>
#include <QPainter>

#include <utility>

namespace fennik::ui {

namespace {

/// What stands in the field for `path`, and can be read back to the very same bytes.
QString fieldText(std::string_view path) {
    return fromUtf8(typeablePath(path));
}

QString upToLastSeparator(const QString& text) {
    return text.left(text.lastIndexOf(QLatin1Char('/')) + 1);
}

/// The begin of a name that stands at the end of `text`, in bytes.
std::string typedName(const QString& text) {
    auto path = text.toStdString();
    if (auto decoded = pathOfFileUrl(path))
        path = std::move(*decoded);
    return path.substr(path.rfind('/') + 1);
}

std::string_view nameOf(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

bool isOwnKey(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        return !(event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier));
    default:
        return false;
    }
}

/// What the keys do, at the foot of the suggestions.
QString footOf(PathField::Place place) {
    const auto foot =
        place == PathField::Place::pathBar
            ? QStringLiteral("↑↓ vybrat · Tab doplnit · %1 otevřít · %2 zpět do panelu")
            : QStringLiteral("↑↓ vybrat · Tab doplnit · %1 převzít · %2 zavřít návrhy");
    return foot.arg(KeyCaps::enter, KeyCaps::escape);
}

} // namespace

PathField::PathField(Place place, const Theme& theme, Icons& icons, QWidget* parent)
    : QLineEdit(parent),
      place_(place),
      theme_(theme),
      icons_(icons),
      list_(new SuggestionList(footOf(place), theme, icons, window())),
      strip_(new ErrorStrip(theme, icons, window())) {
    setObjectName(QStringLiteral("pathField"));
    setAccessibleName(QStringLiteral("Cesta ke složce"));
    setTextMargins(theme.px(17), 0, 0, 0);
    connect(this, &QObject::destroyed, list_, &QObject::deleteLater);
    connect(this, &QObject::destroyed, strip_, &QObject::deleteLater);
    connect(this, &QLineEdit::textEdited, this, &PathField::takeEdit);
    // The grey rest stands only behind a caret at the end.
    connect(this, &QLineEdit::cursorPositionChanged, this, qOverload<>(&QWidget::update));
    connect(list_, &SuggestionList::clicked, this, [this](int row) {
        if (place_ == Place::dialog) {
            take(row);
            return;
        }
        list_->choose(row);
        accept();
    });
    wearOnceShown(*this, theme, StyleSheet::fields,
                  place == Place::pathBar ? QStringView(u"QLineEdit { min-height: 24u; }")
                                          : QStringView());
}

void PathField::open(std::string_view folder) {
    setPath(folder);
    isOpen_ = true;
    setFocus(Qt::OtherFocusReason);
    selectAll();
}

void PathField::setPath(std::string_view path) {
    clearError();
    closeList();
    setText(path.starts_with('/') ? fieldText(path) : fromUtf8(path));
}

void PathField::closeList() {
    list_->setRows({});
    list_->hide();
    update();
}

void PathField::setSuggestions(std::vector<std::string> paths, std::string_view currentFolder) {
    const auto prefix = foldedText(trimmed(typedName(text())));
    std::vector<SuggestionList::Row> rows;
    rows.reserve(paths.size());
    for (auto& path : paths) {
        const auto matched = lengthOfPrefix(nameOf(path), prefix).value_or(0);
        const auto note = path == currentFolder ? QStringLiteral("právě otevřená") : QString();
        rows.push_back({std::move(path), matched, note});
    }
    suggestedBelow_ = upToLastSeparator(text());
    list_->setRows(std::move(rows));
    list_->showBelow(placeInWindow());
    update();
}

void PathField::keepWhatFits() {
    std::vector<SuggestionList::Row> rows;
    if (upToLastSeparator(text()) == suggestedBelow_) {
        const auto prefix = foldedText(typedName(text()));
        for (auto row : list_->rows()) {
            const auto matched = lengthOfPrefix(nameOf(row.path), prefix);
            if (!matched)
                continue;
            row.matched = *matched;
            rows.push_back(std::move(row));
        }
    }
    list_->setRows(std::move(rows));
    list_->showBelow(placeInWindow());
}

void PathField::takeEdit() {
    if (const auto line = oneLine(text()); line != text())
        setText(line);
    clearError();
    keepWhatFits();
    update();
    emit typed(text());
}

int PathField::offered() const {
    return list_->rows().empty() ? -1 : std::max(0, list_->chosen());
}

QString PathField::completion() const {
    const int row = offered();
    if (row < 0 || cursorPosition() != text().size() || hasSelectedText())
        return {};
    const auto name = nameOf(list_->rows()[static_cast<std::size_t>(row)].path);
    const auto typed = lengthOfPrefix(name, foldedText(typedName(text())));
    return typed ? shownName(name.substr(*typed)) : QString();
}

void PathField::complete() {
    const int row = offered();
    if (row < 0)
        return;
    const auto& path = list_->rows()[static_cast<std::size_t>(row)].path;
    setText(fieldText(path) + QLatin1Char('/'));
    takeEdit();
}

void PathField::take(int row) {
    setText(fieldText(list_->rows()[static_cast<std::size_t>(row)].path));
    closeList();
}

void PathField::accept() {
    const int row = list_->chosen();
    emit accepted(row < 0 ? text() : fieldText(list_->rows()[static_cast<std::size_t>(row)].path));
}

void PathField::leave() {
    list_->hide();
    if (std::exchange(isOpen_, false))
        emit left();
}

void PathField::showError(const QString& message) {
    closeList();
    strip_->showBelow(placeInWindow(), message);
    setAccessibleDescription(message);
    showInvalid(*this, true);
}

void PathField::clearError() {
    if (strip_->isHidden())
        return;
    strip_->hide();
    setAccessibleDescription({});
    showInvalid(*this, false);
}

QRect PathField::placeInWindow() const {
    return {mapTo(window(), QPoint()), size()};
}

bool PathField::isForField(const QKeyEvent& event) const {
    if (!isOwnKey(event))
        return false;
    if (place_ == Place::pathBar)
        return true;
    const int key = event.key();
    const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
    return key != Qt::Key_Backtab && list_->isVisible() && (!isEnter || list_->chosen() >= 0);
}

bool PathField::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && isForField(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::KeyPress) { // before Tab moves the keyboard
        const auto& press = *static_cast<QKeyEvent*>(event);
        const bool isTab = press.key() == Qt::Key_Tab || press.key() == Qt::Key_Backtab;
        if (isTab && (place_ == Place::pathBar || isForField(press))) {
            if (isOwnKey(press) && press.key() == Qt::Key_Tab)
                complete();
            return true;
        }
    }
    return QLineEdit::event(event);
}

void PathField::keyPressEvent(QKeyEvent* event) {
    if (!isForField(*event)) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    event->accept();
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
        if (list_->isVisible())
            list_->move(event->key() == Qt::Key_Up ? -1 : 1);
        update();
        break;
    case Qt::Key_Escape:
        if (place_ == Place::dialog)
            closeList();
        else
            clearFocus(); // else a field that is hidden would hand the keyboard to any next widget
        break;
    default:
        if (place_ == Place::dialog)
            take(list_->chosen());
        else
            accept();
    }
}

void PathField::paintEvent(QPaintEvent* event) {
    QLineEdit::paintEvent(event);
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    const int side = theme_.px(16);
    const auto icon =
        place_ == Place::pathBar ? QStringLiteral("folder-search") : QStringLiteral("folder-open");
    painter.drawPixmap(theme_.px(8), (height() - side) / 2,
                       icons_.line(icon, side, tokens.text2, devicePixelRatioF()));
    const auto rest = completion();
    if (rest.isEmpty())
        return;
    // The toolkit's rectangle of the caret reaches five pixels beyond it.
    constexpr int beyondCaret = 5;
    const auto caret = cursorRect();
    const QRect room(caret.left() + beyondCaret, 0, width() - caret.left() - theme_.px(12),
                     height());
    painter.setFont(font());
    painter.setPen(tokens.text3);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(rest, Qt::ElideRight, room.width()));
}

void PathField::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    // Another window may be what the path is being copied from.
    const bool comesBack =
        event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason;
    if (!comesBack)
        leave();
}

void PathField::resizeEvent(QResizeEvent* event) {
    QLineEdit::resizeEvent(event);
    if (list_->isVisible())
        list_->showBelow(placeInWindow());
    if (strip_->isVisible())
        strip_->showBelow(placeInWindow(), strip_->message());
}

void PathField::hideEvent(QHideEvent* event) {
    list_->hide();
    clearError();
    QLineEdit::hideEvent(event);
}

} // namespace fennik::ui
