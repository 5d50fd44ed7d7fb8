#include "core/listing/AliasResolver.h"

namespace fennik::AliasResolver {

std::optional<FileUrl> resolve(const FileUrl&) {
    return std::nullopt;
}

} // namespace fennik::AliasResolver
