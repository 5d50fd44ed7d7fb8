#pragma once

#include "core/operations/TrashProvider.h"

namespace fennik::test {

/// For work that trashes nothing.
class NoTrash final : public TrashProvider {
public:
    std::expected<FileUrl, std::string> trash(const FileUrl&) const override {
        return std::unexpected("Koš tu není.");
    }
    void forget(const FileUrl&) const override {}
};

} // namespace fennik::test
