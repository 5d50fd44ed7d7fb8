#pragma once

#include "app/model/ports/SettingsStore.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace fennik::test {

/// A store for one test, which counts the writes.
class MemorySettings final : public app::SettingsStore {
public:
    std::optional<app::SettingValue> value(std::string_view key,
                                           const app::SettingValue& like) const override {
        const auto found = values_.find(key);
        if (found == values_.end() || found->second.index() != like.index())
            return std::nullopt;
        return found->second;
    }
    void setValue(std::string_view key, app::SettingValue value) override {
        values_.insert_or_assign(std::string(key), std::move(value));
        ++writes_;
    }

    int writes() const { return writes_; }

private:
    std::map<std::string, app::SettingValue, std::less<>> values_;
    int writes_ = 0;
};

} // namespace fennik::test
