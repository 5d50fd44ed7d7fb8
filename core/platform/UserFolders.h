#pragma once

#include "core/base/FileUrl.h"

namespace fennik::UserFolders {

/// The user's home folder: $HOME when it is an absolute path, else what the user database says,
/// else "/". Does not ask whether it exists.
FileUrl home();

/// What Fennik may lose at any time: in $XDG_CACHE_HOME when it is an absolute path, else in
/// ".cache" of the home folder. Does not ask whether it exists.
FileUrl cache();

} // namespace fennik::UserFolders
