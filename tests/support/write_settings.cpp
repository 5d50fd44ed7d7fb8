#include "app/system/SettingsFile.h"
#include "core/base/Executor.h"

#include <cstddef>
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

/// FOLDER KEY FIRST LAST LENGTH: stores the numbers FIRST to LAST under KEY in the configuration
/// folder FOLDER, one after the other. Before each number it stores data beside it, of LENGTH
/// times as many bytes. Prints the number and the count of bytes that were stored before.
int main(int argumentCount, char** arguments) {
    if (argumentCount != 6)
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
    const auto length = std::stoll(arguments[5]);
    for (std::int64_t value = std::stoll(arguments[3]); value <= last; ++value) {
        settings.setValue(key + "Data",
                          app::SettingData{std::string(std::size_t(value * length), '"')});
        settings.setValue(key, value);
    }
    return code;
}
