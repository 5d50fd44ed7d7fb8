#include "app/model/Look.h"

#include <algorithm>
#include <array>

namespace fennik::app {

namespace {

template <class T>
struct Name {
    T value = {};
    std::string_view name;
};

constexpr std::array looks{
    Name{Look::system, "system"},
    Name{Look::light, "light"},
    Name{Look::dark, "dark"},
};

constexpr std::array densities{
    Name{Density::compact, "compact"},
    Name{Density::regular, "regular"},
    Name{Density::comfortable, "comfortable"},
};

template <class Names, class T>
std::string_view nameAmong(const Names& names, T value) {
    return std::ranges::find(names, value, &Name<T>::value)->name;
}

template <class T, class Names>
std::optional<T> valueAmong(const Names& names, std::string_view name) {
    const auto found = std::ranges::find(names, name, &Name<T>::name);
    return found == names.end() ? std::nullopt : std::optional(found->value);
}

} // namespace

std::string_view nameOf(Look look) {
    return nameAmong(looks, look);
}

std::string_view nameOf(Density density) {
    return nameAmong(densities, density);
}

std::optional<Look> lookNamed(std::string_view name) {
    return valueAmong<Look>(looks, name);
}

std::optional<Density> densityNamed(std::string_view name) {
    return valueAmong<Density>(densities, name);
}

} // namespace fennik::app
