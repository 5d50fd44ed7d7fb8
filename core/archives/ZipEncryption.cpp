#include "core/archives/ZipEncryption.h"

#include "core/platform/posix/PosixCalls.h"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <sys/types.h>
#include <unistd.h>
#include <vector>

namespace fennik {

namespace {

// Offsets and sizes are those of PKWARE's APPNOTE, in the extra field of AES those of AE-1 and
// AE-2.
constexpr std::size_t entrySize = 46;
constexpr std::size_t endSize = 22;
constexpr std::size_t longestComment = 0xFFFF;
constexpr std::uint16_t encryptedFlag = 1U << 0U;
constexpr std::uint16_t strongFlag = 1U << 6U;
constexpr std::uint16_t aesMethod = 99;
constexpr std::uint16_t aesField = 0x9901;

using Bytes = std::span<const std::byte>;

/// The least significant byte comes first. The bytes must be there.
template <std::unsigned_integral Number>
Number numberAt(Bytes bytes, std::size_t offset) {
    std::uint64_t number = 0;
    for (std::size_t i = sizeof(Number); i-- > 0;)
        number = number << 8U | std::to_integer<std::uint64_t>(bytes[offset + i]);
    return static_cast<Number>(number);
}

bool hasMark(Bytes bytes, std::size_t offset, std::string_view mark) {
    return std::ranges::equal(bytes.subspan(offset, mark.size()), mark,
                              [](std::byte byte, char each) { return char(byte) == each; });
}

class File {
public:
    explicit File(int descriptor) : descriptor_(descriptor) {}

    std::int64_t size() const {
        const auto status = statusOf(descriptor_);
        return status ? status->size : 0;
    }
    /// Valid until the next call; less where the file ends or cannot be read.
    Bytes at(std::int64_t offset, std::size_t size) {
        constexpr std::size_t ahead = std::size_t{64} << 10;
        const bool isThere = offset >= offset_ && offset - offset_ <= std::ssize(window_) &&
                             window_.size() - static_cast<std::size_t>(offset - offset_) >= size;
        if (!isThere) {
            window_.resize(std::max(size, ahead));
            const auto read =
                retried([&] { return pread(descriptor_, window_.data(), window_.size(), offset); });
            window_.resize(static_cast<std::size_t>(std::max<ssize_t>(read, 0)));
            offset_ = offset;
        }
        const auto known = Bytes(window_).subspan(static_cast<std::size_t>(offset - offset_));
        return known.first(std::min(known.size(), size));
    }

private:
    int descriptor_;
    std::int64_t offset_ = 0; ///< of the window
    std::vector<std::byte> window_;
};

/// Where the directory begins. It ends where the record that closes it begins, whatever lies before
/// the archive in its file; larger archives have one more such record.
std::optional<std::int64_t> directoryOf(File& file) {
    const auto size = file.size();
    const auto begin =
        std::max<std::int64_t>(size - static_cast<std::int64_t>(endSize + longestComment), 0);
    const auto tail = file.at(begin, endSize + longestComment);
    for (auto left = tail.size(); left >= endSize; --left) {
        const auto place = left - endSize;
        if (!hasMark(tail, place, "PK\5\6"))
            continue;
        const std::int64_t length = numberAt<std::uint32_t>(tail, place + 12);
        const auto end = begin + static_cast<std::int64_t>(place);
        constexpr std::int64_t wideSize = 56 + 20; // and what leads to it
        if (length != 0xFFFF'FFFF)
            return end - length;
        const auto wide = file.at(end - wideSize, wideSize);
        if (end < wideSize || wide.size() < wideSize || !hasMark(wide, 0, "PK\6\6"))
            return std::nullopt;
        const auto wideLength = numberAt<std::uint64_t>(wide, 40);
        if (wideLength > static_cast<std::uint64_t>(end))
            return std::nullopt;
        return end - wideSize - static_cast<std::int64_t>(wideLength);
    }
    return std::nullopt;
}

std::string aesIn(Bytes fields) {
    constexpr std::size_t head = 4;
    constexpr std::size_t strength = 4;
    while (fields.size() >= head) {
        const auto kind = numberAt<std::uint16_t>(fields, 0);
        const auto size = numberAt<std::uint16_t>(fields, 2);
        fields = fields.subspan(head);
        if (size > fields.size())
            break;
        if (kind == aesField && size > strength) {
            switch (std::to_integer<int>(fields[strength])) {
            case 1:
                return "AES-128";
            case 2:
                return "AES-192";
            case 3:
                return "AES-256";
            default:
                return "AES";
            }
        }
        fields = fields.subspan(size);
    }
    return "AES";
}

} // namespace

std::string zipEncryption(int descriptor) {
    File file(descriptor);
    const auto directory = directoryOf(file);
    if (!directory || *directory < 0)
        return {};
    for (auto offset = *directory;;) {
        const auto entry = file.at(offset, entrySize);
        if (entry.size() < entrySize || !hasMark(entry, 0, "PK\1\2"))
            return {};
        const auto flags = numberAt<std::uint16_t>(entry, 8);
        const auto method = numberAt<std::uint16_t>(entry, 10);
        const std::int64_t nameSize = numberAt<std::uint16_t>(entry, 28);
        const std::size_t extraSize = numberAt<std::uint16_t>(entry, 30);
        const std::int64_t commentSize = numberAt<std::uint16_t>(entry, 32);
        const auto extra = offset + static_cast<std::int64_t>(entrySize) + nameSize;
        if ((flags & strongFlag) != 0)
            return {};
        if ((flags & encryptedFlag) != 0)
            return method == aesMethod ? aesIn(file.at(extra, extraSize)) : "ZipCrypto";
        offset = extra + static_cast<std::int64_t>(extraSize) + commentSize;
    }
}

} // namespace fennik
