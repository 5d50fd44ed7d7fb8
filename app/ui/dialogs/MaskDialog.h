#pragma once

#include "app/ui/dialogs/DialogCard.h"

#include <cstdint>

class QLineEdit;

namespace fennik::ui {

class Chip;
class OutcomeLine;

/// Asks for a mask by which items are marked or unmarked.
class MaskDialog final : public DialogCard {
    Q_OBJECT

public:
    enum class Purpose { mark, unmark };

    /// `recents` are the masks used before, the last one first; at most five are shown.
    MaskDialog(Purpose purpose, const QString& subtitle, const QStringList& recents,
               const Theme& theme, Icons& icons, QWidget* parent);

    QString mask() const;
    void setMask(const QString& mask);
    /// Says what the mask matches; `size` is written out, empty where there is none to tell.
    void setMatches(std::int64_t count, const QString& size);

signals:
    void maskConfirmed(const QString& mask);
    /// Comes with every change, also by a recent mask; `setMatches` is expected to follow.
    void maskChanged(const QString& mask);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void fill(qsizetype recent);
    void takeText();
    void layOutChips();

    QStringList recents_;
    qsizetype shownRecent_ = 0;
    QLineEdit* field_;
    QWidget* chipRow_;
    std::vector<Chip*> chips_;
    OutcomeLine* matches_;
};

} // namespace fennik::ui
