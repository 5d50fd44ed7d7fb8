#include "core/listing/FileItems.h"

#include <algorithm>
#include <string>
#include <utility>

namespace fennik {

namespace {

constexpr auto modeBits = 12U;
constexpr std::uint16_t modeMask = (1U << modeBits) - 1;
constexpr auto nameLengthBits = 16U;

enum RecordFlag : std::uint8_t { linksToDirectoryFlag = 1, hiddenFlag = 2, aliasFlag = 4 };

struct Record {
    std::int64_t size;
    std::int64_t seconds;
    std::uint64_t name; ///< offset into the names, then 16 bits of length
    std::uint32_t nanoseconds;
    std::uint16_t modeAndKind;
    std::uint8_t flags;
};
static_assert(sizeof(Record) == 32);

struct Alias {
    std::uint32_t row;
    FileUrl target;
};

} // namespace

struct FileItems::Store {
    FileUrl folder;
    std::string names;
    std::vector<Record> records;
    std::vector<Alias> aliases; ///< by ascending row; systems with alias files have a few

    const FileUrl* aliasTarget(std::uint32_t row) const {
        return &std::ranges::lower_bound(aliases, row, {}, &Alias::row)->target;
    }

    FileItemView view(std::uint32_t row) const {
        const auto& record = records[row];
        const auto has = [&record](RecordFlag flag) { return (record.flags & flag) != 0; };
        const auto length = record.name & ((1ULL << nameLengthBits) - 1);
        return {.name = std::string_view(names).substr(record.name >> nameLengthBits, length),
                .kind = static_cast<FileKind>(record.modeAndKind >> modeBits),
                .linksToDirectory = has(linksToDirectoryFlag),
                .isHidden = has(hiddenFlag),
                .size = record.size,
                .modified = {record.seconds, record.nanoseconds},
                .mode = static_cast<std::uint16_t>(record.modeAndKind & modeMask),
                .isParentLink = false,
                .aliasTarget = has(aliasFlag) ? aliasTarget(row) : nullptr};
    }
};

std::size_t FileItems::size() const {
    if (order_)
        return order_->size();
    return store_ ? store_->records.size() : 0;
}

std::uint32_t FileItems::storedRow(std::size_t row) const {
    return order_ ? (*order_)[row] : static_cast<std::uint32_t>(row);
}

FileItemView FileItems::view(std::size_t row) const {
    const auto stored = storedRow(row);
    if (stored != parentRow)
        return store_->view(stored);
    return {.name = "..", .kind = FileKind::directory, .mode = 0755, .isParentLink = true};
}

FileItem FileItems::operator[](std::size_t row) const {
    const auto from = view(row);
    if (from.isParentLink)
        return FileItem::parentEntry(folder());
    FileItem item;
    item.name = from.name;
    item.url = folder().appending(from.name, urlForm(from.kind));
    item.kind = from.kind;
    item.linksToDirectory = from.linksToDirectory;
    item.isHidden = from.isHidden;
    item.size = from.size;
    item.modified = from.modified;
    item.mode = from.mode;
    if (from.aliasTarget != nullptr)
        item.aliasTarget = *from.aliasTarget;
    return item;
}

std::optional<std::size_t> FileItems::rowOf(std::string_view name) const {
    for (std::size_t row = 0; row < size(); ++row) {
        if (view(row).name == name)
            return row;
    }
    return std::nullopt;
}

const FileUrl& FileItems::folder() const {
    static const FileUrl root;
    return store_ ? store_->folder : root;
}

FileItems FileItems::reordered(std::vector<std::uint32_t> order) const {
    if (order_) {
        for (auto& row : order)
            row = row == parentRow ? parentRow : storedRow(row);
    }
    FileItems result;
    result.store_ = store_;
    result.order_ = std::make_shared<const std::vector<std::uint32_t>>(std::move(order));
    return result;
}

FileItems::Builder::Builder(FileUrl folder, std::size_t expected)
    : store_(std::make_shared<Store>()) {
    store_->folder = std::move(folder);
    store_->records.reserve(expected);
}

FileItems::Builder::~Builder() = default;

void FileItems::Builder::add(const FileItemView& item) {
    auto& store = *store_;
    unsigned flags = 0;
    if (item.linksToDirectory)
        flags |= linksToDirectoryFlag;
    if (item.isHidden)
        flags |= hiddenFlag;
    if (item.aliasTarget != nullptr) {
        flags |= aliasFlag;
        store.aliases.push_back(
            {static_cast<std::uint32_t>(store.records.size()), *item.aliasTarget});
    }
    const auto kind = static_cast<unsigned>(item.kind) << modeBits;
    store.records.push_back(
        {.size = item.size,
         .seconds = item.modified.seconds,
         .name = std::uint64_t{store.names.size()} << nameLengthBits | item.name.size(),
         .nanoseconds = item.modified.nanoseconds,
         .modeAndKind = static_cast<std::uint16_t>(kind | (item.mode & modeMask)),
         .flags = static_cast<std::uint8_t>(flags)});
    store.names += item.name;
}

FileItems FileItems::Builder::finish() {
    store_->names.shrink_to_fit();
    store_->records.shrink_to_fit();
    FileItems result;
    result.store_ = std::exchange(store_, nullptr);
    return result;
}

} // namespace fennik
