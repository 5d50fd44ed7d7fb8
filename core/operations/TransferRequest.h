#pragma once

#include "core/operations/UrlList.h"

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace fennik {

enum class TransferKind { copy, move, pack, extract };

struct TransferPair {
    FileUrl source = {};
    FileUrl destination = {}; ///< the path the item itself will have, not that of the folder
    friend bool operator==(const TransferPair&, const TransferPair&) = default;
};

/// Pairs in their order, in little memory.
class TransferPairs {
public:
    TransferPairs() = default;
    TransferPairs(std::initializer_list<TransferPair> pairs);
    TransferPairs(const std::vector<TransferPair>& pairs);

    std::size_t size() const { return sources_.size(); }
    bool empty() const { return size() == 0; }
    void push_back(const TransferPair& pair);
    TransferPair operator[](std::size_t index) const {
        return {.source = sources_[index], .destination = destinations_[index]};
    }
    TransferPair front() const { return (*this)[0]; }

    friend bool operator==(const TransferPairs&, const TransferPairs&) = default;

private:
    UrlList sources_;
    UrlList destinations_;
};

/// What is to be transferred, in the order in which the user chose the items.
struct TransferRequest {
    TransferKind kind = TransferKind::copy;
    TransferPairs pairs = {};
    std::optional<std::string> title = {}; ///< in place of the usual one

    /// "Kopírování „x“" or "Přesun 3 položek", unless it has a title of its own.
    std::string jobTitle() const;
    /// The folder that holds the first destination; empty without pairs.
    std::string destinationFolder() const;
};

} // namespace fennik
