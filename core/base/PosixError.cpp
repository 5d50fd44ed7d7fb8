#include "core/base/PosixError.h"

#include <system_error>

namespace fennik {

std::string PosixError::reason() const {
    return std::generic_category().message(code);
}

} // namespace fennik
