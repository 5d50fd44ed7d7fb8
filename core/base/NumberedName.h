#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace fennik {

/// `name` with `number` behind its base: "a.txt" and " 2" give "a 2.txt". A number that stands
/// there already is replaced; an empty one changes nothing. Where the whole has more than `length`
/// bytes, the base is cut between characters, or between bytes where it is not valid UTF-8. An
/// extension that leaves no room for a base is a part of it. `length` is at least that of the
/// number.
std::string numberedName(std::string_view name, std::string_view number, std::size_t length);

} // namespace fennik
