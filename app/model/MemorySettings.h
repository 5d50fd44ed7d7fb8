#pragma once

#include "app/model/ports/SettingsStore.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace fennik::app {

/// Settings that last as long as this object.
class MemorySettings : public SettingsStore {
public:
    std::optional<SettingValue> value(std::string_view key,
                                      const SettingValue& like) const override {
        const auto found = values_.find(key);
        if (found == values_.end() || found->second.index() != like.index())
            return std::nullopt;
        return found->second;
    }
    void setValue(std::string_view key, SettingValue value) override {
        values_.insert_or_assign(std::string(key), std::move(value));
    }

private:
    std::map<std::string, SettingValue, std::less<>> values_;
};

} // namespace fennik::app
