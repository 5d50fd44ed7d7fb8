#include "app/model/Settings.h"

namespace fennik::app {

void Settings::registerDefaults() {
    using namespace SettingKeys;
    registerDefault(appearance, "system");
    registerDefault(density, "regular");
    registerDefault(showHidden, false);
    registerDefault(autoFolderSizes, true);
    registerDefault(editorApp, "");
    registerDefault(terminalApp, "terminal");
    registerDefault(confirmTrash, true);
    registerDefault(confirmThreshold, 10);
    registerDefault(throttleMBps, 0);
    registerDefault(autoHideQueue, true);
    registerDefault(extractIntoOwnFolder, true);
}

} // namespace fennik::app
