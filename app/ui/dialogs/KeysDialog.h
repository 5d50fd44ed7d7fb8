#pragma once

#include "app/ui/dialogs/DialogCard.h"

#include <QString>
#include <QStringList>

#include <vector>

class QLineEdit;
class QScrollArea;

namespace fennik::ui {

class KeySheet;

/// All shortcuts in force on one sheet, with a field that leaves only those that are looked for.
class KeysDialog final : public DialogCard {
    Q_OBJECT

public:
    struct Row {
        QString title = {};
        QStringList keys = {}; ///< their legends
    };
    struct Group {
        QString title = {};
        std::vector<Row> rows = {};
    };

    KeysDialog(const Theme& theme, Icons& icons, QWidget* parent);

    /// The sheet shows these from now on, as far as they are looked for.
    void setGroups(const std::vector<Group>& groups);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void look();

    QLineEdit* filter_;
    KeySheet* sheet_;
    QScrollArea* area_;
};

} // namespace fennik::ui
