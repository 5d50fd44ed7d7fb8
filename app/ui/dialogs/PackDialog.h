#pragma once

#include "app/model/Dialog.h"
#include "app/ui/dialogs/FieldDialog.h"
#include "app/ui/dialogs/SourceList.h"

class QCheckBox;
class QLabel;

namespace fennik::ui {

class ArchiveNameField;
class LevelSlider;
class PasswordField;
class SegmentedControl;

/// Asks what archive items are to be packed into.
class PackDialog final : public FieldDialog {
    Q_OBJECT

public:
    /// Begins with what has been chosen already, where something has.
    PackDialog(const app::PackDialog& dialog, const SourceItems& sources, const QString& subtitle,
               const Theme& theme, Icons& icons, QWidget* parent);

    app::PackAnswer answer() const;

signals:
    /// Comes with every change by the user; `setOutcome` is expected to follow.
    void answerChanged(const fennik::app::PackAnswer& answer);
    void answerConfirmed(const fennik::app::PackAnswer& answer);

protected:
    bool isComplete() const override;

private:
    QWidget* makeContent(OutcomeLine* outcome);
    void fill(const app::PackAnswer& answer);
    void takeFormat();
    void takeLevel();
    void takePasswords();
    void tellAnswer();
    bool takesPassword() const;
    bool passwordsAgree() const;

    ArchiveNameField* name_;
    SegmentedControl* format_;
    QLabel* levelText_;
    LevelSlider* level_;
    SegmentedControl* place_;
    PasswordField* password_;
    PasswordField* repeated_;
    OutcomeLine* aboutPassword_;
    QCheckBox* skipJunk_;
};

} // namespace fennik::ui
