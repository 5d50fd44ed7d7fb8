#pragma once

#include "core/operations/TrashProvider.h"
#include "core/operations/Trashes.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace fennik::test {

/// An ordinary folder that serves as a trash, and refuses when it is told to.
class TestTrash final : public TrashProvider {
public:
    /// Places of items that were taken back.
    mutable std::vector<FileUrl> forgotten = {};
    std::optional<std::string> refusal = {};
    /// Called once an item has been taken, with the place where it was.
    std::function<void(const FileUrl&)> onTrashed = [](const FileUrl&) {};

    explicit TestTrash(FileUrl folder) : folder_(std::move(folder)) {}

    std::expected<FileUrl, std::string> trash(const FileUrl& item) const override;
    void forget(const FileUrl& place) const override { forgotten.push_back(place); }

private:
    FolderTrash folder_;
};

} // namespace fennik::test
