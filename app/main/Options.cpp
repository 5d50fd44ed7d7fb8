#include "app/main/Options.h"

#include "core/base/CzechText.h"
#include "core/base/FileUrl.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace fennik::app {

namespace {

/// "1440x900"; none where it is no size a window can have.
bool readSize(std::string_view text, Options& options) {
    constexpr int most = 8'192;
    const auto times = text.find('x');
    if (times == std::string_view::npos)
        return false;
    const auto read = [](std::string_view digits, int& number) {
        // The end of the digits is given beside their beginning.
        const auto* begin = digits.data(); // NOLINT(bugprone-suspicious-stringview-data-usage)
        const auto* end = begin + digits.size();
        const auto result = std::from_chars(begin, end, number);
        return result.ec == std::errc() && result.ptr == end && number > 0 && number <= most;
    };
    return read(text.substr(0, times), options.width) &&
           read(text.substr(times + 1), options.height);
}

/// "150" percent; none where no text has that size.
std::optional<double> textScaleOf(std::string_view text) {
    constexpr int least = 85;
    constexpr int most = 200;
    int percent = 0;
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, percent);
    const bool isNumber = result.ec == std::errc() && result.ptr == end;
    return isNumber && percent >= least && percent <= most ? std::optional(percent / 100.0)
                                                           : std::nullopt;
}

std::string isNoValue(std::string_view value, std::string_view option) {
    return "Hodnotě " + quoted(value) + " u volby " + std::string(option) + " nerozumím.";
}

/// Takes over the value of an option; a sentence where it makes no sense.
std::optional<std::string> takeValue(std::string_view option, std::string_view value,
                                     Options& options) {
    if (option == "--screenshot") {
        options.task = Options::Task::screenshot;
        options.screenshotFile = value;
        return value.empty() ? std::optional(isNoValue(value, option)) : std::nullopt;
    }
    if (option == "--appearance") {
        const auto look = lookNamed(value);
        options.look = look.value_or(Look::system);
        return look ? std::nullopt : std::optional(isNoValue(value, option));
    }
    if (option == "--tour") {
        options.task = Options::Task::tour;
        options.tourFolder = value;
        return value.empty() ? std::optional(isNoValue(value, option)) : std::nullopt;
    }
    if (option == "--text-scale") {
        options.textScale = textScaleOf(value);
        return options.textScale ? std::nullopt : std::optional(isNoValue(value, option));
    }
    return readSize(value, options) ? std::nullopt : std::optional(isNoValue(value, option));
}

bool wantsValue(std::string_view option) {
    static constexpr std::array names{"--screenshot", "--tour", "--appearance", "--size",
                                      "--text-scale"};
    return std::ranges::find(names, option) != names.end();
}

} // namespace

std::expected<Options, std::string> readOptions(std::span<const char* const> arguments) {
    Options options;
    bool onlyPaths = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument(arguments[i]);
        const bool isOption = !onlyPaths && argument.size() > 1 && argument.starts_with('-');
        if (!isOption) {
            auto& side = options.left ? options.right : options.left;
            if (side)
                return std::unexpected("Nejvýš dvě složky: levá a pravá.");
            side = argument;
        } else if (argument == "--") {
            onlyPaths = true;
        } else if (argument == "--help" || argument == "-h") {
            options.task = Options::Task::help;
            return options;
        } else if (argument == "--version") {
            options.task = Options::Task::version;
            return options;
        } else if (argument == "--verbose") {
            options.verbose = true;
        } else if (argument == "--high-contrast") {
            options.highContrast = true;
        } else if (argument == "--reduced-motion") {
            options.reducedMotion = true;
        } else {
            const auto equals = argument.find('=');
            const auto name = argument.substr(0, equals);
            if (!wantsValue(name))
                return std::unexpected("Neznámá volba " + quoted(argument) +
                                       ". Všechny ukáže --help.");
            if (equals == std::string_view::npos && i + 1 == arguments.size())
                return std::unexpected("Za volbou " + std::string(name) + " chybí hodnota.");
            const auto value = equals == std::string_view::npos ? std::string_view(arguments[++i])
                                                                : argument.substr(equals + 1);
            if (auto fault = takeValue(name, value, options))
                return std::unexpected(std::move(*fault));
        }
    }
    return options;
}

std::string helpText() {
    return R"(Fennik – správce souborů se dvěma panely, ovládaný z klávesnice

Použití: fennik [volby] [LEVÁ [PRAVÁ]]

  LEVÁ, PRAVÁ             složky panelů; u souboru jeho složka s kurzorem na něm
                          (bez nich domovská složka)
  --screenshot SOUBOR     okno jen nakreslí do obrázku PNG a skončí; nepotřebuje displej
  --appearance VZHLED     system, light nebo dark
  --size ŠÍŘKAxVÝŠKA      velikost okna, například 1440x900
  --text-scale PROCENTA   velikost písma, 85 až 200
  --high-contrast         vysoký kontrast
  --reduced-motion        bez pohybu
  --tour SLOŽKA           nakreslí do složky obrázky všech částí okna s ukázkovými soubory;
                          nepotřebuje displej
  --verbose               na chybový výstup píše, co se načetlo a jak dlouho to trvalo
  --version               vypíše verzi
  --help                  vypíše tuto nápovědu
)";
}

std::string absolutePath(const std::string& path, const std::string& workingFolder) {
    const auto whole = path.starts_with('/') ? path : workingFolder + "/" + path;
    return FileUrl(whole).standardized().path();
}

std::optional<std::string> absolutePath(const std::optional<std::string>& given) {
    if (!given)
        return std::nullopt;
    std::error_code error;
    const auto workingFolder = std::filesystem::current_path(error).string();
    // A working folder that was removed has no path any more; nothing is found below this one.
    return absolutePath(*given,
                        error ? "/proc/" + std::to_string(getpid()) + "/cwd" : workingFolder);
}

} // namespace fennik::app
