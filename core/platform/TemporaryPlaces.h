#pragma once

#include "core/base/Executor.h"
#include "core/base/FileUrl.h"
#include "core/base/PosixError.h"

#include <cstdint>
#include <expected>
#include <memory>

namespace fennik {

/// A folder that nobody but the user can enter. It goes, with all that lies in it, soon after the
/// last one who holds it.
class TemporaryPlace {
public:
    virtual ~TemporaryPlace() = default;
    virtual const FileUrl& folder() const = 0;
};

/// Where one run of the program keeps what other programs or its own panels need as files for a
/// while. What a run that was killed has left behind is known by a lock that nobody holds.
class TemporaryPlaces {
public:
    /// `base` is made once it is needed, the folders above it too. `disk` removes what is
    /// to go, and outlives them. `mostBytes` is what a single file in a place should have at most.
    TemporaryPlaces(FileUrl base, DiskExecutor& disk, std::int64_t mostBytes);
    /// As `close`.
    ~TemporaryPlaces();
    TemporaryPlaces(const TemporaryPlaces&) = delete;
    TemporaryPlaces& operator=(const TemporaryPlaces&) = delete;

    const FileUrl& base() const;
    std::int64_t mostBytes() const;
    /// A new empty place. Waits for the disk; safe on any thread. ESHUTDOWN once this is closed.
    std::expected<std::shared_ptr<const TemporaryPlace>, PosixError> make();
    /// Removes, on the executor, what killed runs have left. Does not wait for it.
    void sweep();
    /// Removes all places, whoever holds them. Waits for the disk; safe on any thread.
    void close();

private:
    struct State;
    std::shared_ptr<State> state_; ///< shared with the places
};

} // namespace fennik
