#pragma once

#include "core/operations/FolderNode.h"

#include <string>
#include <utility>
#include <vector>

namespace fennik {

/// The folders that the pairs of a request begin from. The one used last stays at hand, as the next
/// pair usually begins from the same.
class TransferPlaces {
public:
    /// As much of the way to a folder as there is.
    struct Way {
        FolderNode::Pointer folder = {};       ///< the last one that is there
        std::vector<std::string> missing = {}; ///< the names below it, the topmost first
    };

    explicit TransferPlaces(OpenFolders& folders) : folders_(folders) {}

    FolderNode::Result<FolderNode::Pointer> folder(const FileUrl& url);
    FolderNode::Result<Way> wayTo(const FileUrl& url);
    /// Keeps another folder at hand.
    void use(FolderNode::Pointer folder) { last_ = std::move(folder); }

private:
    OpenFolders& folders_;
    FolderNode::Pointer last_;
};

} // namespace fennik
