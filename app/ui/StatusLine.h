#pragma once

#include "app/model/PanelModel.h"
#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QWidget>

namespace fennik::ui {

class MarksChip;
class RunLabel;

/// What loading looks like after a while.
enum class LoadingStage { none, noticeable, rowless, noAnswer };

/// The line under the rows: how many items there are, the item under the cursor, and the free
/// space, or what an archive comes to.
class StatusLine final : public QWidget {
    Q_OBJECT

public:
    StatusLine(app::PanelModel& panel, const Theme& theme, Icons& icons, QWidget* parent);

    void setLoadingStage(LoadingStage stage);
    /// The letters that are being searched for; empty for none.
    void setSearch(const QString& text);
    /// What the keys or a drag would do, in place of everything but the free space; empty for none.
    void setHint(const QString& hint);
    /// What takes its time, in place even of a hint; empty for nothing.
    void setBusy(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void takePanel();
    void showSpace();
    /// Whether that many pixels are left beside the words that come first.
    bool hasRoomFor(int width) const;
    void makeRoomForIcon();
    bool isAtWork() const;
    QString summary() const;
    QString marksText() const;
    QString details() const;

    app::PanelModel& panel_;
    const Theme& theme_;
    Icons& icons_;
    LoadingStage stage_ = LoadingStage::none;
    QString search_;
    QString hint_;
    QString busy_;
    MarksChip* marks_;
    RunLabel* summary_;
    RunLabel* details_;
    RunLabel* space_;
};

/// How many items the panel shows, ".." not counted.
std::int64_t shownItemCount(const app::PanelModel& panel);

} // namespace fennik::ui
