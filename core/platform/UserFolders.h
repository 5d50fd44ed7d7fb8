#pragma once

#include "core/base/FileUrl.h"

namespace fennik::UserFolders {

/// The user's home folder: $HOME when it is an absolute path, else what the user database says,
/// else "/". Does not ask whether it exists.
FileUrl home();

} // namespace fennik::UserFolders
