#include "tests/support/TestTrash.h"

namespace fennik::test {

std::expected<FileUrl, std::string> TestTrash::trash(const FileUrl& item) const {
    if (refusal)
        return std::unexpected(*refusal);
    auto place = folder_.trash(item);
    if (place)
        onTrashed(item);
    return place;
}

} // namespace fennik::test
