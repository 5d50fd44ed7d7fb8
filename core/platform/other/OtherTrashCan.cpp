#include "core/platform/TrashCan.h"

namespace fennik::TrashCan {

std::expected<FileUrl, std::string> trash(const FileUrl&, const Relocate&) {
    return std::unexpected("Koš tohoto systému Fennik neumí používat.");
}

void forget(const FileUrl&) {}

} // namespace fennik::TrashCan
