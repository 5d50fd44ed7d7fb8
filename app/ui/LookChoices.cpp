#include "app/ui/LookChoices.h"

namespace fennik::ui::LookChoices {

std::vector<Choice<app::Look>> looks() {
    return {{app::Look::system, QStringLiteral("Podle systému"), QStringLiteral("monitor")},
            {app::Look::light, QStringLiteral("Světlý"), QStringLiteral("sun")},
            {app::Look::dark, QStringLiteral("Tmavý"), QStringLiteral("moon")}};
}

std::vector<Choice<app::Density>> densities() {
    return {{app::Density::compact, QStringLiteral("Hustá"), {}},
            {app::Density::regular, QStringLiteral("Střední"), {}},
            {app::Density::comfortable, QStringLiteral("Vzdušná"), {}}};
}

} // namespace fennik::ui::LookChoices
