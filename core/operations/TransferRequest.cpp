#include "core/operations/TransferRequest.h"

#include "core/base/CzechText.h"

namespace fennik {

TransferPairs::TransferPairs(std::initializer_list<TransferPair> pairs) {
    for (const auto& pair : pairs)
        push_back(pair);
}

TransferPairs::TransferPairs(const std::vector<TransferPair>& pairs) {
    for (const auto& pair : pairs)
        push_back(pair);
}

void TransferPairs::push_back(const TransferPair& pair) {
    sources_.push_back(pair.source);
    destinations_.push_back(pair.destination);
}

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
