#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QWidget>

class QLabel;

namespace fennik::ui {

/// One sentence in a dialog about what would happen, with an icon that says whether it is good.
class OutcomeLine final : public QWidget {
    Q_OBJECT

public:
    enum class Kind {
        ok,
        creates, ///< something that is not there yet
        renames,
        note,
        error,
    };

    OutcomeLine(const Theme& theme, Icons& icons, QWidget* parent);

    void setOutcome(Kind kind, const QString& text);
    Kind kind() const { return kind_; }
    const QString& text() const { return text_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString icon() const;
    QColor color() const;
    void takeTheme();

    const Theme& theme_;
    Icons& icons_;
    Kind kind_ = Kind::note;
    QLabel* label_;
    QString text_;
};

} // namespace fennik::ui
