#pragma once

#include "app/ui/UiContext.h"

#include <QPointer>
#include <QWidget>

#include <vector>

class QLabel;
class QLineEdit;
class QMenu;

namespace fennik::ui {

class KeyButton;

/// The application that files are edited with: typed as a program or a path, or chosen among those
/// that are installed.
class EditorField final : public QWidget {
    Q_OBJECT

public:
    EditorField(const UiContext& context, QWidget* parent);

    /// Shows another choice, which was not made here.
    void setValue(const QString& value);

    QSize sizeHint() const override;

signals:
    void valueChanged(const QString& value);

private:
    void choose();
    void take(std::vector<app::TextEditor> editors);
    void fillMenu();
    void put(const QString& value);
    void showName();

    UiContext context_;
    bool isKnown_ = false; ///< what is installed
    std::vector<app::TextEditor> editors_;
    QLineEdit* field_;
    KeyButton* button_;
    QLabel* name_;
    QPointer<QMenu> menu_;
};

} // namespace fennik::ui
