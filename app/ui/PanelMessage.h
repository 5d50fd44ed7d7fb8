#pragma once

#include "app/ui/UiContext.h"

#include <QWidget>

class QBoxLayout;
class QLabel;

namespace fennik::ui {

class KeyButton;

/// What stands in a panel instead of rows: why its folder cannot be shown, or that it is empty. The
/// keyboard stays with the table; the buttons say which of its keys help.
class PanelMessage final : public QWidget {
    Q_OBJECT

public:
    PanelMessage(const UiContext& context, app::PanelModel& panel, QWidget* parent);

    enum class Content { nothing, failure, emptyFolder };
    /// What the panel has to say now; `nothing` hides this widget.
    Content content() const;
    void takePanel();
    /// The colour of the rows that it stands in for.
    void setGround(const QColor& rows);

signals:
    /// One of the buttons was clicked.
    void answered();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void showFailure(const FolderOpener::Failure& failure);
    void showEmptyFolder();
    /// Hides what there is no room for.
    void fit();

    UiContext context_;
    app::PanelModel& panel_;
    const Theme& theme_;
    Icons& icons_;
    QWidget* tile_; ///< the place of the icon
    QLabel* text_;
    QLabel* hint_;
    QWidget* answers_; ///< holds the buttons
    QBoxLayout* buttons_;
    KeyButton* retry_;
    KeyButton* leave_;
    KeyButton* upwards_;
    KeyButton* newFolder_;
    KeyButton* paste_;
    QString icon_;
    QColor iconColor_;
    QColor ground_;
};

} // namespace fennik::ui
