#include "core/operations/TransferRequest.h"

#include "core/base/CzechText.h"

namespace fennik {

std::string TransferRequest::jobTitle() const {
    if (title)
        return *title;
    const std::string work = kind == TransferKind::copy ? "Kopírování" : "Přesun";
    if (pairs.size() == 1)
        return work + " " + quoted(pairs.front().source.lastComponent());
    return work + " " + std::to_string(pairs.size()) + " položek";
}

std::string TransferRequest::destinationFolder() const {
    return pairs.empty() ? "" : pairs.front().destination.parent().path();
}

} // namespace fennik
