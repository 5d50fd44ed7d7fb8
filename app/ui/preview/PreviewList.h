#pragma once

#include "app/model/PreviewContent.h"
#include "app/ui/Icons.h"
#include "app/ui/Theme.h"

#include <QAbstractListModel>
#include <QListView>

namespace fennik::ui {

/// What lies in a folder or an archive, to be looked at.
class PreviewList final : public QListView {
    Q_OBJECT

public:
    PreviewList(const Theme& theme, Icons& icons, QWidget* parent);
    ~PreviewList() override;

    void show(const app::PreviewList& list);
    /// Gives the memory back.
    void clear() { show({}); }

private:
    class Items;
    class Rows;

    Items* items_;
};

} // namespace fennik::ui
