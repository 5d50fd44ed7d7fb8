#include "app/model/AppModel.h"
#include "app/model/ItemAt.h"
#include "app/model/ItemInspection.h"
#include "app/model/QuickPreview.h"
#include "core/base/PathText.h"

#include <utility>

namespace fennik::app {

void AppModel::quickLook() {
    if (quickPreview_->close())
        return;
    if (activePanel().cursorItem())
        quickPreview_->open(activePanel());
    else
        showToast("Není co ukázat.");
}

void AppModel::closePreview() {
    quickPreview_->close();
}

void AppModel::stopLooking() {
    quickPreview_->close();
    inspection_->end();
}

void AppModel::openInfo() {
    const auto& panel = activePanel();
    const auto under = panel.cursorItem();
    if (!under)
        return showToast("Není o čem podat informace.");
    InfoDialog dialog{.item = panel.items()[panel.cursor()], .archive = panel.archive()};
    if (under->isParentLink) {
        // The way up is a folder of its own; that of an archive is told by the folder on the disk.
        auto above = panel.archive() ? panel.folder() : panel.folder().parent();
        dialog = {.item = itemAt(std::move(above), FileKind::directory)};
    }
    setDialog(std::move(dialog));
}

void AppModel::inspectItem() {
    if (const auto* dialog = stage_.shownAs<InfoDialog>())
        inspection_->begin(*dialog);
    else
        inspection_->end();
}

const ItemDetails& AppModel::itemDetails() const {
    return inspection_->details();
}

void AppModel::copyInfoPath() {
    const auto* dialog = stage_.shownAs<InfoDialog>();
    if (dialog == nullptr)
        return;
    services_.clipboard.setText(storedPath(dialog->item.url.path()));
    showToast("Cesta zkopírována", Toast::Kind::ok);
}

} // namespace fennik::app
