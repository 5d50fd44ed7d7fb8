#pragma once

#include "app/model/CancelFlag.h"
#include "app/model/Dialog.h"
#include "app/model/LinkTargets.h"
#include "app/model/PanelServices.h"
#include "core/listing/FolderSizer.h"

#include <functional>
#include <memory>
#include <optional>

namespace fennik::app {

/// What has become known of an item so far.
struct ItemDetails {
    std::optional<FileStatus> status = {}; ///< as it is on the disk now
    std::optional<LinkTarget> link = {};
    std::optional<FolderSizer::Result> content = {}; ///< of a folder, as far as it is counted
    bool isCounting = false;
};

/// Finds out what a panel does not know of an item: on workers, for the one that is wanted last.
/// Lives on the main thread.
class ItemInspection {
public:
    /// `changed` is called when something has become known.
    ItemInspection(PanelServices services, std::function<void()> changed);
    ~ItemInspection() { end(); }
    ItemInspection(const ItemInspection&) = delete;
    ItemInspection& operator=(const ItemInspection&) = delete;

    const ItemDetails& details() const { return details_; }
    void begin(const InfoDialog& wanted);
    void end();

private:
    void examine(const FileItem& item);
    void count(const InfoDialog& wanted);

    PanelServices services_;
    std::function<void()> changed_;
    ItemDetails details_;
    std::shared_ptr<CancelFlag> flag_ = std::make_shared<CancelFlag>(); ///< of what is under way
    std::shared_ptr<int> life_;                                         ///< likewise
};

} // namespace fennik::app
