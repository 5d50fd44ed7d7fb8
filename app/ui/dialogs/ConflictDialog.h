#pragma once

#include "app/ui/dialogs/DialogCard.h"
#include "core/operations/Conflict.h"
#include "core/operations/JobSnapshot.h"

#include <array>

class QBoxLayout;
class QCheckBox;
class QGridLayout;

namespace fennik::ui {

class ChoiceTile;
class ConflictSide;

/// Asks what is to become of an item whose name is taken. It comes up by itself while the user is
/// at something else: keys do nothing at first, and held ones never do.
class ConflictDialog final : public DialogCard {
    Q_OBJECT

public:
    ConflictDialog(const Theme& theme, Icons& icons, QWidget* parent);
    ~ConflictDialog() override;

    /// Asks about this clash, in place of one that has been answered. The new one begins as the
    /// first did, but takes keys at once.
    void ask(const Conflict& conflict, const JobSnapshot& job);

signals:
    void answered(const fennik::ConflictDecision& decision);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    static constexpr std::size_t choiceCount = 4;

    void answer(std::size_t choice);
    bool moveFocus(int key);
    void placeTiles(int columns);

    std::array<ChoiceTile*, choiceCount> tiles_{};
    ConflictSide* newItem_;
    ConflictSide* existing_;
    QWidget* arrow_;    ///< from the one to the other
    QBoxLayout* sides_; ///< one below the other where there is little room
    QGridLayout* grid_; ///< of the tiles
    int columns_ = 0;   ///< of it
    QWidget* mismatch_;
    QCheckBox* forAll_;
};

} // namespace fennik::ui
