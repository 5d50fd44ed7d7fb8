#pragma once

#include "core/operations/TrashProvider.h"

#include <utility>

namespace fennik {

/// The trash of the desktop.
class SystemTrash final : public TrashProvider {
public:
    std::expected<FileUrl, std::string> trash(const FileUrl& item) const override;
    void forget(const FileUrl& place) const override;
};

/// An ordinary folder that serves as a trash. It is made when it is needed.
class FolderTrash final : public TrashProvider {
public:
    explicit FolderTrash(FileUrl folder) : folder_(std::move(folder)) {}

    std::expected<FileUrl, std::string> trash(const FileUrl& item) const override;
    void forget(const FileUrl&) const override {} // it notes nothing

private:
    FileUrl folder_;
};

} // namespace fennik
