#include "core/platform/Volumes.h"

namespace fennik::Volumes {

std::vector<Volume> mounted() {
    return {};
}

} // namespace fennik::Volumes
