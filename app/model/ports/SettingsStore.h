#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace fennik::app {

/// A setting of plain bytes, as opposed to text.
struct SettingData {
    std::string bytes = {};

    friend bool operator==(const SettingData&, const SettingData&) = default;
};

/// What can be stored under a key. Texts are valid UTF-8.
using SettingValue =
    std::variant<bool, std::int64_t, double, std::string, std::vector<std::string>, SettingData>;

/// Where the user's settings are kept from one run to the next. Main thread only; nothing here
/// waits for a disk.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;

    /// What is stored under `key`, in the alternative that `like` holds; what `like` says beside
    /// that is of no matter. None when the key is missing or its value is not of that type.
    virtual std::optional<SettingValue> value(std::string_view key,
                                              const SettingValue& like) const = 0;
    /// Keeps `value`: it is read back from now on, and makes its way to the disk by itself.
    virtual void setValue(std::string_view key, SettingValue value) = 0;
};

} // namespace fennik::app
