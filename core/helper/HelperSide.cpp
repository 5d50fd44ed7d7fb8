#include "core/helper/HelperSide.h"

#include "core/platform/OwnProcess.h"

#include <array>
#include <cstring>

namespace fennik::HelperSide {

std::optional<Request> takeRequest() {
    MessageHead head;
    std::array<std::byte, sizeof head> bytes{};
    if (!OwnProcess::readAll(bytes))
        return std::nullopt;
    std::memcpy(&head, bytes.data(), sizeof head);
    Request request{.kind = head.kind, .fields = std::vector<std::byte>(head.size)};
    if (!OwnProcess::readAll(request.fields))
        return std::nullopt;
    return request;
}

} // namespace fennik::HelperSide
