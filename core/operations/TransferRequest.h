#pragma once

#include "core/base/FileUrl.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fennik {

enum class TransferKind { copy, move, pack, extract };

struct TransferPair {
    FileUrl source = {};
    FileUrl destination = {}; ///< the path the item itself will have, not that of the folder
    friend bool operator==(const TransferPair&, const TransferPair&) = default;
};

/// What is to be transferred, in the order in which the user chose the items.
struct TransferRequest {
    TransferKind kind = TransferKind::copy;
    std::vector<TransferPair> pairs = {};
    std::optional<std::string> title = {}; ///< in place of the usual one

    /// "Kopírování „x“" or "Přesun 3 položek", unless it has a title of its own.
    std::string jobTitle() const;
    /// The folder that holds the first destination; empty without pairs.
    std::string destinationFolder() const;
};

} // namespace fennik
