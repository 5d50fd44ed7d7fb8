#pragma once

#include "app/ui/Icons.h"
#include "app/ui/RunLabel.h"
#include "app/ui/Theme.h"
#include "core/base/Date.h"
#include "core/base/FileUrl.h"
#include "core/listing/FileItem.h"

#include <QWidget>

#include <cstdint>

namespace fennik::ui {

class ElidedLabel;

/// How an item compares with the one it clashes with.
enum class Comparison { none, more, same };

/// One of two items that clash: what it is, and in what it exceeds the other one.
class ConflictSide final : public QWidget {
    Q_OBJECT

public:
    struct Item {
        FileUrl url = {};
        FileKind kind = FileKind::file;
        std::int64_t size = 0; ///< bytes; nothing that is told of a folder
        Date date = Date::distantPast();
        Comparison bySize = Comparison::none;
        Comparison byDate = Comparison::none; ///< `more` is newer
    };

    ConflictSide(const QString& heading, const Theme& theme, Icons& icons, QWidget* parent);

    void setItem(const Item& item);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    class Tag;
    void takeItem();

    QString heading_;
    const Theme& theme_;
    Icons& icons_;
    Item item_;
    ElidedLabel* name_;
    ElidedLabel* folder_;
    RunLabel* size_;
    RunLabel* date_;
    Tag* sizeTag_;
    Tag* dateTag_;
};

} // namespace fennik::ui
