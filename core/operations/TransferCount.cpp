#include "core/operations/TransferCount.h"

#include <utility>
#include <vector>

namespace fennik {

namespace {

/// Files examined between two looks at the checkpoint.
constexpr unsigned filesPerLook = 64;

/// A folder whose own files have been counted.
struct Level {
    FolderNode::Pointer node;
    std::vector<std::string> folders; ///< still to be counted
};

class TreeCount {
public:
    explicit TreeCount(OperationContext& context) : context_(context) {}

    TransferTotals count(const FolderNode::Pointer& folder, const std::string& name) {
        enter(folder, name);
        while (!levels_.empty() && !isStopped_) {
            if (levels_.back().folders.empty()) {
                levels_.pop_back();
                continue;
            }
            const auto next = std::move(levels_.back().folders.back());
            levels_.back().folders.pop_back();
            enter(levels_.back().node, next);
        }
        while (!levels_.empty())
            levels_.pop_back();
        return total_;
    }

private:
    void enter(const FolderNode::Pointer& parent, const std::string& name) {
        look();
        const auto node = FolderNode::below(parent, name);
        if (!node)
            return;
        const auto held = (*node)->open();
        if (!held)
            return;
        auto entries = (*held)->entries();
        if (!entries)
            return;
        Level level{.node = *node, .folders = {}};
        for (auto& entry : *entries) {
            if (isStopped_)
                return;
            if (entry.type == FileType::directory)
                level.folders.push_back(std::move(entry.name));
            else
                countFile(**held, entry);
        }
        levels_.push_back(std::move(level));
    }

    void countFile(const OpenFolder& folder, const OpenFolder::Entry& entry) {
        if (++total_.files % filesPerLook == 0)
            look();
        if (entry.type != FileType::regular)
            return;
        if (const auto status = folder.status(entry.name))
            total_.bytes += bytesOf(*status);
    }

    void look() { isStopped_ = isStopped_ || context_.checkpoint() == Checkpoint::stop; }

    OperationContext& context_;
    TransferTotals total_;
    std::vector<Level> levels_;
    bool isStopped_ = false;
};

} // namespace

std::int64_t bytesOf(const FileStatus& status) {
    return status.type == FileType::regular ? status.size : 0;
}

TransferTotals countTree(const FolderNode::Pointer& folder, const std::string& name,
                         const FileStatus& status, OperationContext& context) {
    if (status.type != FileType::directory)
        return {.bytes = bytesOf(status), .files = 1};
    return TreeCount(context).count(folder, name);
}

} // namespace fennik
