#include "core/platform/FolderEvents.h"

namespace fennik {

namespace {

class NoFolderEvents final : public FolderEvents {
public:
    std::unique_ptr<Watch> watch(const std::string&, std::function<void()>) override {
        return nullptr;
    }
};

} // namespace

std::unique_ptr<FolderEvents> makeFolderEvents() {
    return std::make_unique<NoFolderEvents>();
}

} // namespace fennik
