#pragma once

namespace fennik {

/// One function object of several, as a visitor of a variant.
template <class... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};

} // namespace fennik
