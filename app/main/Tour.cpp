#include "app/main/Tour.h"

#include "app/main/PictureFile.h"
#include "app/main/Session.h"
#include "app/main/TourFiles.h"
#include "app/main/TourScenes.h"
#include "app/main/TourStage.h"
#include "core/base/CzechText.h"

#include <QDir>
#include <QImage>

#include <array>
#include <iostream>
#include <linux/capability.h>
#include <optional>
#include <string>
#include <string_view>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

namespace fennik::app {

namespace {

/// How a scene is shown besides the appearance of the options.
struct Dress {
    std::string_view suffix; ///< of the picture's name
    int width = 1440;
    int height = 900;
    double textScale = 1;
    bool isHighContrast = false;
    bool isGrey = false;
};

constexpr std::array dresses{
    Dress{.suffix = ""},
    Dress{.suffix = "-small", .width = 760, .height = 480},
    Dress{.suffix = "-large-text", .textScale = 2},
    Dress{.suffix = "-small-large-text", .width = 760, .height = 480, .textScale = 2},
    Dress{.suffix = "-high-contrast", .isHighContrast = true},
    Dress{.suffix = "-grey", .isGrey = true},
};

/// The superuser may enter every folder, and no picture would show that one cannot be entered.
void obeyPermissions() {
    __user_cap_header_struct header{.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
    std::array<__user_cap_data_struct, 2> data{};
    if (syscall(SYS_capget, &header, data.data()) != 0)
        return;
    constexpr unsigned overrides = (1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH);
    data[0].effective &= ~overrides;
    syscall(SYS_capset, &header, data.data());
}

/// The picture of a scene with files of its own; none where these cannot be made.
std::optional<QImage> play(const TourScene& scene, Options options) {
    const TourFiles files;
    if (!files.isComplete())
        return std::nullopt;
    options.left = files.path("Dokumenty/Smlouvy 2026");
    options.right = files.path("Záloha");
    Session session(options);
    TourStage stage(session, files);
    scene.play(stage);
    auto image = stage.picture();
    session.shutDown();
    return image;
}

} // namespace

int runTour(const Options& options) {
    const auto folder = QString::fromLocal8Bit(options.tourFolder.c_str());
    if (!QDir().mkpath(folder)) {
        std::cerr << "Složku " << quoted(options.tourFolder) << " na obrázky nejde založit.\n";
        return 1;
    }
    // Seen from here, before the scenes have a home of their own.
    const auto place = QDir(folder).absolutePath().toStdString();
    obeyPermissions();
    qunsetenv("DBUS_SESSION_BUS_ADDRESS"); // the desktop at hand has no say in the colours
    for (const auto& scene : tourScenes()) {
        for (const auto& dress : dresses) {
            if (!dress.suffix.empty() && scene.looks == TourScene::Looks::plain)
                continue;
            for (const auto& [look, lookSuffix] :
                 {std::pair(Look::light, "-light"), std::pair(Look::dark, "-dark")}) {
                const auto name = std::string(scene.name) + std::string(dress.suffix) + lookSuffix;
                auto dressed = options;
                dressed.look = look;
                dressed.width = dress.width;
                dressed.height = dress.height;
                dressed.textScale = dress.textScale;
                dressed.highContrast = dress.isHighContrast;
                const auto image = play(scene, dressed);
                if (!image) {
                    std::cerr << "Ukázkové soubory pro obrázky nejde založit.\n";
                    return 1;
                }
                const auto shown =
                    dress.isGrey ? image->convertToFormat(QImage::Format_Grayscale8) : *image;
                if (const auto written = writePicture(shown, place + "/" + name + ".png");
                    !written) {
                    std::cerr << written.error() << '\n';
                    return 1;
                }
            }
        }
    }
    return 0;
}

} // namespace fennik::app
