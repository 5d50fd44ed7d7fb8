#pragma once

#include "app/ui/Icons.h"
#include "app/ui/Theme.h"
#include "app/ui/preview/PreviewTexts.h"

#include <QWidget>

#include <vector>

class QGridLayout;
class QLabel;

namespace fennik::ui {

/// The kind of an item as a large icon, with what there is to say where there is nothing to show.
class PreviewNotice final : public QWidget {
    Q_OBJECT

public:
    PreviewNotice(const Theme& theme, Icons& icons, QWidget* parent);

    /// `title` and `text` may be empty.
    void show(FileLook look, const QString& title, const QString& text,
              const std::vector<PreviewTexts::Fact>& facts = {});

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme_;
    Icons& icons_;
    FileLook look_ = FileLook::file;
    QWidget* place_; ///< of the icon
    QLabel* title_;
    QLabel* text_;
    QWidget* facts_;
    QGridLayout* rows_;
};

} // namespace fennik::ui
