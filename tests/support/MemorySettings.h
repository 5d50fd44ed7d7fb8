#pragma once

#include "app/model/MemorySettings.h"

#include <string_view>
#include <utility>

namespace fennik::test {

/// A store for one test, which counts the writes.
class MemorySettings final : public app::MemorySettings {
public:
    void setValue(std::string_view key, app::SettingValue value) override {
        app::MemorySettings::setValue(key, std::move(value));
        ++writes_;
    }

    int writes() const { return writes_; }

private:
    int writes_ = 0;
};

} // namespace fennik::test
