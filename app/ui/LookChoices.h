#pragma once

#include "app/model/Look.h"

#include <QString>

#include <vector>

/// The looks that can be chosen, in the order in which they are offered. Safe on any thread.
namespace fennik::ui::LookChoices {

template <class T>
struct Choice {
    T value = {};
    QString title = {};
    QString icon = {}; ///< for `Icons::line`, may be empty
};

inline const QString lookTitle = QStringLiteral("Vzhled");
inline const QString densityTitle = QStringLiteral("Hustota řádků");

std::vector<Choice<app::Look>> looks();
std::vector<Choice<app::Density>> densities();

} // namespace fennik::ui::LookChoices
