#pragma once

#include "core/listing/MarkState.h"

#include <variant>

namespace fennik::app {

/// Asks for masks, to mark or unmark the items that match.
struct MaskDialog {
    Marking marking = Marking::mark;

    friend bool operator==(const MaskDialog&, const MaskDialog&) = default;
};

/// The one modal dialog on show, with what it needs to know.
using Dialog = std::variant<MaskDialog>;

} // namespace fennik::app
