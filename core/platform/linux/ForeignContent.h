#pragma once

#include "core/base/FileUrl.h"

namespace fennik {

/// Whether there is something in the folder that its user can move along with it but never remove:
/// what others keep in folders of their own. Waits for the disk, for as long as the tree is large.
bool holdsForeignContent(const FileUrl& folder);

} // namespace fennik
