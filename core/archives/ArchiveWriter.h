#pragma once

#include "core/archives/PackOptions.h"
#include "core/base/Date.h"
#include "core/base/PosixError.h"
#include "core/platform/FileSystem.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <span>
#include <string>

namespace fennik {

/// One item as it is to stand in an archive.
struct PackedEntry {
    std::string path = {};             ///< as on the disk, "/" between its components
    FileType type = FileType::regular; ///< anything but `other`
    std::int64_t size = 0;             ///< of a regular file
    Date modified = {};                ///< the nearest one that the format can hold is written
    std::uint16_t mode = 0;
    std::string linkTarget = {};
};

/// Writes one archive through the library. An error is a whole sentence; then nothing but the end
/// of this object makes sense. For one thread, which has an `ArchiveLocale`.
class ArchiveWriter {
public:
    template <class T>
    using Result = std::expected<T, std::string>;
    /// Takes the bytes of the archive, in their order, also while the archive is being finished.
    /// After it has failed it is not called again.
    using Sink = std::function<std::expected<void, PosixError>(std::span<const std::byte>)>;

    /// Nothing is written yet.
    static Result<ArchiveWriter> open(const PackOptions& options, Sink sink);
    ArchiveWriter(ArchiveWriter&& other) noexcept;
    ArchiveWriter& operator=(ArchiveWriter&& other) noexcept;
    /// Without `finish` the archive stays half a one. Threads that compress are waited for until
    /// they are through with what they have, which for .xz may take seconds.
    ~ArchiveWriter();

    Result<void> begin(const PackedEntry& item);
    /// More of the data of that item: in the end exactly its size.
    Result<void> write(std::span<const std::byte> bytes);
    Result<void> finish();

private:
    struct State;
    explicit ArchiveWriter(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

} // namespace fennik
