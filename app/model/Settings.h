#pragma once

#include "app/model/ports/SettingsStore.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace fennik::app {

/// The name of a setting and the type that is stored under it.
template <class T>
struct SettingKey {
    using Value = T;
    std::string_view name;
};

/// Every setting there is. Names are part of the stored format.
namespace SettingKeys {

inline constexpr SettingKey<SettingData> panels{"panels.v1"}; ///< JSON of SavedState
/// What stood under `panels` when no tab could be read from it, the last time that happened.
inline constexpr SettingKey<SettingData> unreadablePanels{"panels.v1.unreadable"};
inline constexpr SettingKey<SettingData> shortcuts{"shortcuts.v1"}; ///< JSON of the user's keys
/// What stood under `shortcuts` when it could not be read, the last time that happened.
inline constexpr SettingKey<SettingData> unreadableShortcuts{"shortcuts.v1.unreadable"};
inline constexpr SettingKey<std::string> leftPath{"leftPath"};   ///< only ever read
inline constexpr SettingKey<std::string> rightPath{"rightPath"}; ///< only ever read
inline constexpr SettingKey<std::vector<std::string>> commandHistory{"commandHistory"};
inline constexpr SettingKey<std::vector<std::string>> favorites{"favorites"};
inline constexpr SettingKey<std::vector<std::string>> recents{"recents"};
inline constexpr SettingKey<std::vector<std::string>> maskHistory{"maskHistory"};
inline constexpr SettingKey<bool> showHidden{"showHidden"};
inline constexpr SettingKey<double> throttleMBps{"throttleMBps"}; ///< 10^6 bytes a second, 0: none
inline constexpr SettingKey<bool> autoHideQueue{"autoHideQueue"};
inline constexpr SettingKey<bool> confirmTrash{"confirmTrash"};
inline constexpr SettingKey<std::int64_t> confirmThreshold{"confirmThreshold"}; ///< items
inline constexpr SettingKey<bool> autoFolderSizes{"autoFolderSizes"};
inline constexpr SettingKey<std::string> editorApp{"editorApp"};     ///< empty: the desktop's own
inline constexpr SettingKey<std::string> terminalApp{"terminalApp"}; ///< "terminal", "iterm"
inline constexpr SettingKey<std::string> appearance{"appearance"};   ///< "system", "light", "dark"
inline constexpr SettingKey<std::string> density{
    "density"}; ///< "compact", "regular", "comfortable"
inline constexpr SettingKey<bool> fdaBannerDismissed{"fdaBannerDismissed"};
inline constexpr SettingKey<bool> welcomeShown{"tips.welcomeShown"};
inline constexpr SettingKey<bool> extractIntoOwnFolder{"extract.ownFolder"};
inline constexpr SettingKey<std::string> settingsTab{"settingsTab"}; ///< "general", "operations",
                                                                     ///< "keys"

} // namespace SettingKeys

/// The user's settings by their keys. A key under which nothing of its type is stored reads as the
/// default that was registered for it, else as the type's zero value. Main thread only.
class Settings {
public:
    /// Told that the value under `name` is another one now.
    using OnChange = std::function<void(std::string_view name)>;

    /// `store` outlives the settings. No defaults are registered yet.
    explicit Settings(SettingsStore& store, OnChange onChange = {})
        : store_(store), onChange_(std::move(onChange)) {}

    /// Registers what the settings window presents when nothing is stored, so that everybody reads
    /// the same. Stores nothing.
    void registerDefaults();

    template <class T>
    T get(const SettingKey<T>& key) const {
        auto stored = store_.value(key.name, SettingValue(T()));
        if (const auto* value = stored ? std::get_if<T>(&*stored) : nullptr)
            return *value;
        const auto found = defaults_.find(key.name);
        return found == defaults_.end() ? T() : std::get<T>(found->second);
    }

    /// Stores at once.
    template <class T>
    void set(const SettingKey<T>& key, typename SettingKey<T>::Value value) {
        const bool isChange = get(key) != value;
        store_.setValue(key.name, SettingValue(std::move(value)));
        if (isChange && onChange_)
            onChange_(key.name);
    }

private:
    template <class T>
    void registerDefault(const SettingKey<T>& key, typename SettingKey<T>::Value value) {
        defaults_.insert_or_assign(key.name, SettingValue(std::move(value)));
    }

    SettingsStore& store_;
    OnChange onChange_;
    std::map<std::string_view, SettingValue> defaults_;
};

} // namespace fennik::app
