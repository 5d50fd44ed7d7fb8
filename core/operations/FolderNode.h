#pragma once

#include "core/base/FileUrl.h"
#include "core/platform/OpenFolder.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace fennik {

class FolderNode;

/// Keeps the few folders of a walk open that were used last, however deep and wide the trees are.
/// For one thread. Outlives its nodes.
class OpenFolders {
public:
    explicit OpenFolders(std::size_t limit = usualLimit()) : limit_(limit) {}
    OpenFolders(const OpenFolders&) = delete;
    OpenFolders& operator=(const OpenFolders&) = delete;

private:
    friend class FolderNode;
    static std::size_t usualLimit();
    void use(FolderNode& node);
    void forget(const FolderNode& node);
    void close(FolderNode& node);
    void closeAllBut(const FolderNode* node);

    std::size_t limit_;
    std::vector<FolderNode*> recent_; ///< the one used last at the end
};

/// A folder in a tree that is being walked. It is opened when it is needed, from the one above it,
/// and never anything else in its place: no link below the top, and no folder that has taken the
/// name meanwhile.
class FolderNode {
public:
    template <class T>
    using Result = OpenFolder::Result<T>;
    using Pointer = std::shared_ptr<FolderNode>;
    /// Stays open as long as somebody holds it.
    using Held = std::shared_ptr<const OpenFolder>;

    /// The top of a tree. Links in the path are followed, the last one too.
    static Result<Pointer> at(OpenFolders& folders, const FileUrl& url);
    /// The folder in `parent` that is called `name`. ENOTDIR or ELOOP for a link.
    static Result<Pointer> below(const Pointer& parent, const std::string& name);

    FolderNode(const FolderNode&) = delete;
    FolderNode& operator=(const FolderNode&) = delete;
    ~FolderNode();

    /// ESTALE: another folder lies in its place.
    Result<Held> open();
    const FileUrl& url() const { return url_; }
    const FileIdentity& identity() const { return identity_; }
    /// None for the top of a tree.
    const Pointer& parent() const { return parent_; }
    /// Whether `folder` is this folder or contains it, by whatever path: up to the root folder.
    bool isInOrIs(const FileIdentity& folder);

private:
    friend class OpenFolders;
    FolderNode(OpenFolders& folders, Pointer parent, FileUrl url, FileIdentity identity)
        : folders_(folders),
          parent_(std::move(parent)),
          url_(std::move(url)),
          identity_(identity) {}

    static Result<Pointer> made(OpenFolders& folders, Pointer parent, FileUrl url,
                                Result<OpenFolder> opened);
    static Result<OpenFolder> openedBelow(FolderNode& parent, const std::string& name);
    Result<void> openFrom(Result<OpenFolder> opened);
    const std::vector<FileIdentity>& foldersAbove();

    OpenFolders& folders_;
    Pointer parent_;
    FileUrl url_;
    FileIdentity identity_;
    Held held_;
    std::optional<std::vector<FileIdentity>> above_ = {}; ///< of a top, once it was asked for
};

} // namespace fennik
