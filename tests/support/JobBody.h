#pragma once

#include "core/operations/TransferEngine.h"

#include <functional>
#include <utility>
#include <vector>

namespace fennik::test {

/// A body that does this, and says nothing of the pairs.
inline TransferEngine::Body bodyOf(std::function<void(OperationContext&)> work) {
    return [work = std::move(work)](OperationContext& context) {
        work(context);
        return std::vector<PairOutcome>();
    };
}

} // namespace fennik::test
