#pragma once

#include "app/ui/dialogs/DialogCard.h"

#include <QStringList>

#include <cstddef>
#include <vector>

namespace fennik::ui {

/// What the program can do, a few sentences at a time, with the keys that do it.
class TipsDialog final : public DialogCard {
    Q_OBJECT

public:
    struct Tip {
        QStringList keys = {}; ///< their legends
        QString sentence = {};
    };
    using Page = std::vector<Tip>;

    /// `pages` are not empty; the first one is shown, and after the last one it again.
    TipsDialog(std::vector<Page> pages, const Theme& theme, Icons& icons, QWidget* parent);

private:
    void showPage();

    std::vector<Page> pages_;
    std::size_t page_ = 0;
};

} // namespace fennik::ui
