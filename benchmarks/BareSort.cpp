#include "benchmarks/BareSort.h"

#include "core/listing/NameKey.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <span>
#include <string>
#include <tuple>
#include <utility>

namespace fennik::bench {

namespace {

struct Record {
    std::uint64_t word; ///< the bytes of the key that are compared now
    std::uint32_t row;
    std::uint32_t offset; ///< of these bytes in the arena
};
static_assert(sizeof(Record) == 16);

constexpr auto wordSize = sizeof(Record::word);

using Records = std::span<Record>;

bool comesFirst(const FileItemView& item) {
    return item.isFolderLike() && item.kind != FileKind::package;
}

class ArenaSort {
public:
    explicit ArenaSort(const FileItems& items) : items_(items) {}

    Order run() {
        std::vector<Record> records;
        records.reserve(items_.size());
        const auto folders = append(records, true);
        append(records, false);
        for (auto& record : records)
            record.word = wordAt(record.offset);
        sort(Records(records).first(folders));
        sort(Records(records).subspan(folders));
        Order order;
        order.reserve(records.size());
        for (const auto& record : records)
            order.push_back(record.row);
        return order;
    }

private:
    std::size_t append(std::vector<Record>& records, bool folders) {
        for (std::uint32_t row = 0; row < items_.size(); ++row) {
            const auto item = items_.view(row);
            if (comesFirst(item) != folders)
                continue;
            records.push_back({0, row, static_cast<std::uint32_t>(arena_.size())});
            NameKey::appendBytes(item.name, arena_);
            arena_.resize((arena_.size() + wordSize - 1) / wordSize * wordSize);
        }
        return records.size();
    }

    std::uint64_t wordAt(std::uint32_t offset) const {
        std::uint64_t word = 0;
        std::memcpy(&word, arena_.data() + offset, sizeof word);
        return std::endian::native == std::endian::little ? __builtin_bswap64(word) : word;
    }

    /// Whether this word is the last of its key. Keys are filled up to whole words with the zero
    /// that ends them and occurs nowhere else.
    static bool endsKey(std::uint64_t word) { return (word & 0xFFU) == 0; }

    void sort(Records records) {
        constexpr std::size_t few = 24;
        while (records.size() > few) {
            const auto pivot =
                std::max(std::min(records.front().word, records.back().word),
                         std::min(std::max(records.front().word, records.back().word),
                                  records[records.size() / 2].word));
            auto [lower, greater] = partition(records, pivot);
            sort(lower);
            sort(greater);
            const auto equal =
                records.subspan(lower.size(), records.size() - lower.size() - greater.size());
            if (endsKey(pivot)) {
                sortFew(equal);
                return;
            }
            for (auto& record : equal) {
                record.offset += wordSize;
                record.word = wordAt(record.offset);
            }
            records = equal;
        }
        sortFew(records);
    }

    static std::pair<Records, Records> partition(Records records, std::uint64_t pivot) {
        std::size_t lower = 0;
        std::size_t greater = records.size();
        for (std::size_t i = 0; i < greater;) {
            if (records[i].word < pivot)
                std::swap(records[lower++], records[i++]);
            else if (records[i].word > pivot)
                std::swap(records[i], records[--greater]);
            else
                ++i;
        }
        return {records.first(lower), records.subspan(greater)};
    }

    void sortFew(Records records) {
        std::ranges::sort(records, [this](const Record& a, const Record& b) {
            if (a.word != b.word)
                return a.word < b.word;
            const auto order = endsKey(a.word) ? 0
                                               : std::strcmp(arena_.data() + a.offset + wordSize,
                                                             arena_.data() + b.offset + wordSize);
            return order != 0 ? order < 0 : items_.view(a.row).name < items_.view(b.row).name;
        });
    }

    const FileItems& items_;
    std::string arena_;
};

} // namespace

Order sortInArena(const FileItems& items) {
    return ArenaSort(items).run();
}

Order sortPlainly(const FileItems& items) {
    std::vector<std::vector<std::uint32_t>> keys;
    keys.reserve(items.size());
    Order order;
    order.reserve(items.size());
    for (std::uint32_t row = 0; row < items.size(); ++row) {
        keys.push_back(NameKey::make(items.view(row).name));
        order.push_back(row);
    }
    std::ranges::sort(order, [&](std::uint32_t a, std::uint32_t b) {
        const auto first = items.view(a);
        const auto second = items.view(b);
        if (comesFirst(first) != comesFirst(second))
            return comesFirst(first);
        return std::tie(keys[a], first.name) < std::tie(keys[b], second.name);
    });
    return order;
}

} // namespace fennik::bench
