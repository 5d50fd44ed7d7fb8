#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QLineEdit>

#include <string>
#include <string_view>
#include <vector>

namespace fennik::ui {

class ErrorStrip;
class SuggestionList;

/// The field of a path, with suggestions below it and the first or the chosen one in grey behind
/// the text. Its text is that of a path, or its "file://" URL where the path could not stand in a
/// line of text and be read back: for bytes that are not UTF-8, control characters, white space at
/// an end.
///
/// Asks nothing of the disk: its owner answers `typed` with `setSuggestions` and `accepted` with
/// `showError` or by putting it away.
class PathField final : public QLineEdit {
    Q_OBJECT

public:
    enum class Place {
        pathBar, ///< Tab never leaves the field; Enter opens the path and Esc leaves the field
        dialog,  ///< Tab, Enter and Esc are about the suggestions first, then about the dialog
    };

    /// The list and the message float over the window that `parent` stands in.
    PathField(Place place, const Theme& theme, Icons& icons, QWidget* parent);

    /// Shows the path of a folder, all of it selected, and takes the keyboard. Absolute bytes.
    void open(std::string_view folder);
    /// Shows a path in absolute bytes, or a text that was typed.
    void setPath(std::string_view path);
    /// The folders that the text may be the begin of, in their order. Absolute bytes, as is
    /// `currentFolder`, the one that is open.
    void setSuggestions(std::vector<std::string> paths, std::string_view currentFolder);
    /// Says why the path could not be opened, until the text changes.
    void showError(const QString& message);

    /// What stands in grey behind the text.
    QString completion() const;

signals:
    /// The user has changed the text.
    void typed(const QString& text);
    /// Enter was pressed in a path bar: the text of the suggestion that the user has moved to, else
    /// as it stands. In a dialog that suggestion comes into the field.
    void accepted(const QString& text);
    /// Esc was pressed, which leaves the keyboard to nobody, or the keyboard has gone elsewhere.
    /// Once for each `open`.
    void left();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void takeEdit();
    void keepWhatFits();
    void complete();
    void accept();
    void take(int row);
    void closeList();
    void leave();
    void clearError();
    /// The suggestion that Tab would take, -1 for none.
    int offered() const;
    QRect placeInWindow() const;
    /// Whether a key means something here, or else to what the field is part of.
    bool isForField(const QKeyEvent& event) const;

    Place place_;
    const Theme& theme_;
    Icons& icons_;
    SuggestionList* list_;
    ErrorStrip* strip_;
    QString suggestedBelow_; ///< the text up to its last "/" that the suggestions are for
    bool isOpen_ = false;
};

} // namespace fennik::ui
