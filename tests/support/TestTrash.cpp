#include "tests/support/TestTrash.h"

#include "core/operations/Relocation.h"

namespace fennik::test {

std::expected<FileUrl, std::string> TestTrash::trash(const FileUrl& item) const {
    if (refusal)
        return std::unexpected(*refusal);
    auto place = UniqueName::url(folder_, item.lastComponent());
    if (auto moved = Relocation::move(item, place); !moved)
        return std::unexpected(std::move(moved.error()));
    onTrashed(item);
    return place;
}

} // namespace fennik::test
