#include "app/model/ItemInspection.h"

#include "app/model/ArchivePaths.h"

#include <string>
#include <utility>
#include <vector>

namespace fennik::app {

namespace {

bool isFolder(const FileItem& item) {
    return item.kind == FileKind::directory || item.kind == FileKind::package;
}

/// What lies below a folder of an archive; none once it was cancelled.
std::optional<FolderSizer::Result> contentOf(const ArchiveIndex& index, const std::string& folder,
                                             const CancelFlag& flag) {
    FolderSizer::Result result{.bytes = index.folderSize(folder)};
    std::vector<std::string> left{folder};
    while (!left.empty()) {
        if (flag.isSet())
            return std::nullopt;
        const auto current = std::move(left.back());
        left.pop_back();
        for (const auto name : index.children(current)) {
            auto path = ArchivePaths::child(current, name);
            const auto entry = index.find(path);
            if (entry && entry->kind == ArchiveEntry::Kind::directory) {
                ++result.folders;
                left.push_back(std::move(path));
            } else {
                ++result.files;
            }
        }
    }
    return result;
}

/// The item itself, and where it leads.
ItemDetails examined(const FileSystem& files, const FileItem& item) {
    ItemDetails details;
    if (const auto status = files.status(item.url.path(), FollowLinks::no))
        details.status = *status;
    if (!details.status || details.status->type != FileType::symlink)
        return details;
    if (auto target = files.linkTarget(item.url.path()))
        details.link = LinkTarget{.path = *std::move(target),
                                  .isBroken = !files.status(item.url.path(), FollowLinks::yes)};
    return details;
}

} // namespace

ItemInspection::ItemInspection(PanelServices services, std::function<void()> changed)
    : services_(std::move(services)), changed_(std::move(changed)) {}

void ItemInspection::begin(const InfoDialog& wanted) {
    end();
    flag_ = std::make_shared<CancelFlag>();
    life_ = std::make_shared<int>();
    details_.isCounting = isFolder(wanted.item);
    if (!wanted.archive) {
        examine(wanted.item);
    } else if (wanted.item.isLink()) {
        const auto& index = *wanted.archive->index;
        const auto path = ArchivePaths::child(wanted.archive->inner, wanted.item.name);
        if (const auto entry = index.find(path))
            details_.link = LinkTarget{.path = entry->linkTarget.value_or(""),
                                       .isBroken = !ArchivePaths::resolved(index, path)};
    }
    if (details_.isCounting)
        count(wanted);
}

void ItemInspection::end() {
    flag_->set();
    life_.reset();
    details_ = {};
}

void ItemInspection::examine(const FileItem& item) {
    runThen(
        services_.disk, services_.main, item.url.path(), life_,
        [&files = services_.files, item] { return examined(files, item); },
        [this](ItemDetails found) {
            details_.status = found.status;
            details_.link = std::move(found.link);
            changed_();
        });
}

void ItemInspection::count(const InfoDialog& wanted) {
    auto tell = [this, &main = services_.main,
                 life = std::weak_ptr(life_)](const FolderSizer::Result& soFar) {
        main.execute([this, life, soFar] {
            if (life.expired())
                return;
            details_.content = soFar;
            changed_();
        });
    };
    runThen(
        services_.sizingDisk, services_.main, wanted.item.url.path(), life_,
        [&files = services_.files, wanted, flag = flag_, tell = std::move(tell)] {
            const auto& archive = wanted.archive;
            if (archive)
                return contentOf(*archive->index,
                                 ArchivePaths::child(archive->inner, wanted.item.name), *flag);
            return FolderSizer::size(
                files, wanted.item.url, [flag] { return flag->isSet(); }, {}, tell);
        },
        [this](std::optional<FolderSizer::Result> content) {
            details_.content = content;
            details_.isCounting = false;
            changed_();
        });
}

} // namespace fennik::app
