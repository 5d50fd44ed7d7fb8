#include "app/system/SettingsFile.h"
#include "core/base/Executor.h"

#include <cstdint>
#include <iostream>
#include <string>

namespace {

using namespace fennik;

class AtOnce final : public Executor {
public:
    void execute(Task task) override { task(); }
};

} // namespace

/// Stores the numbers FIRST to LAST under KEY in the configuration folder FOLDER, one after the
/// other, each in a file that is the longer the greater the number is. Prints what was stored there
/// before.
int main(int argumentCount, char** arguments) {
    if (argumentCount != 5)
        return 2;
    AtOnce here;
    int code = 0;
    system::SettingsFile settings(arguments[1], here, here, [&code](const std::string& sentence) {
        std::cerr << sentence << '\n';
        code = 1;
    });
    const std::string key = arguments[2];
    const auto number = settings.value(key, app::SettingValue(std::int64_t()));
    const auto data = settings.value(key + "Data", app::SettingValue(app::SettingData()));
    std::cout << (number ? std::get<std::int64_t>(*number) : -1) << ' '
              << (data ? std::get<app::SettingData>(*data).bytes.size() : 0) << std::endl;
    const auto last = std::stoll(arguments[4]);
    for (std::int64_t value = std::stoll(arguments[3]); value <= last; ++value) {
        settings.setValue(key + "Data",
                          app::SettingData{std::string(std::size_t(value * 50), '"')});
        settings.setValue(key, value);
    }
    return code;
}
