#pragma once

#include "app/model/ports/SettingsStore.h"
#include "app/system/IniFile.h"
#include "core/base/Executor.h"

#include <QSet>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace fennik::system {

/// The settings in their file. The file is read once, by the constructor; from then on values are
/// read from memory, and written by `worker`, all that wait for it in one go. A value that cannot
/// be written stays in memory and is tried again with the next one.
class SettingsFile final : public app::SettingsStore {
public:
    /// Where programs keep their configuration: $XDG_CONFIG_HOME when it is an absolute path, else
    /// ".config" in `home` (XDG Base Directory).
    static std::string configFolder(const std::string& home);

    /// Tells the user, in a whole sentence, that settings cannot be kept.
    using Report = std::function<void(const std::string& sentence)>;

    /// `worker` runs tasks one at a time. It and `main` outlive the settings. `report` is called
    /// on `main`: once, and after a success again.
    SettingsFile(const std::string& configFolder, Executor& worker, Executor& main, Report report);
    ~SettingsFile() override;
    SettingsFile(const SettingsFile&) = delete;
    SettingsFile& operator=(const SettingsFile&) = delete;

    std::optional<app::SettingValue> value(std::string_view key,
                                           const app::SettingValue& like) const override;
    void setValue(std::string_view key, app::SettingValue value) override;

private:
    struct Writer;

    Executor& worker_;
    std::shared_ptr<Report> report_;
    std::shared_ptr<Writer> writer_;
    IniFile::Values values_;
    mutable QSet<QString> notUnderstood_; ///< keys whose values were read in vain
};

} // namespace fennik::system
