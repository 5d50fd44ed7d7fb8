#include "core/listing/FileSorter.h"

#include "core/listing/NameKey.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>
#include <numeric>
#include <ranges>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace fennik::FileSorter {

namespace {

/// One item on its way: the eight bytes that are compared now, the row it stands for, and where the
/// word of its key lies in the arena of the current stage, counted in words.
struct Record {
    std::uint64_t word;
    std::uint32_t row;
    std::uint32_t key;
};
static_assert(sizeof(Record) == 16);

using Records = std::span<Record>;

bool countsAsFolder(const FileItemView& item) {
    return item.isFolderLike() && item.kind != FileKind::package;
}

/// Turns a signed number into an unsigned one of the same order.
std::uint64_t ordered(std::int64_t number) {
    return static_cast<std::uint64_t>(number) ^ 1ULL << 63U;
}

/// Runs of records that no stage could tell apart so far.
using Runs = std::vector<Records>;

void appendEqualRuns(Records records, Runs& runs) {
    for (std::size_t begin = 0; begin < records.size();) {
        auto end = begin + 1;
        while (end < records.size() && records[end].word == records[begin].word)
            ++end;
        if (end - begin > 1)
            runs.push_back(records.subspan(begin, end - begin));
        begin = end;
    }
}

/// Sorts records stage by stage: each stage orders the runs that the stages before left equal.
class Sorter {
public:
    Sorter(const FileItems& items, PanelSort sort, const FolderSizes& folderSizes)
        : items_(items),
          folderSizes_(folderSizes),
          key_(sort.key),
          flip_(sort.ascending ? 0 : std::numeric_limits<std::uint64_t>::max()) {}

    void run(Records records) {
        Runs runs{records};
        const auto nameOf = [](const FileItemView& item) { return item.name; };
        switch (key_) {
        case SortKey::name:
            runs = byText(runs, flip_, nameOf);
            break;
        case SortKey::ext:
            runs = byText(runs, flip_, [](const auto& item) {
                return item.fileExtension().value_or(std::string_view());
            });
            break;
        case SortKey::size:
            runs = byNumber(runs, [this](const auto& item) { return ordered(sizeOf(item)); });
            break;
        case SortKey::modified:
            runs = byNumber(runs, [](const auto& item) { return ordered(item.modified.seconds); });
            runs = byNumber(
                runs, [](const auto& item) -> std::uint64_t { return item.modified.nanoseconds; });
            break;
        case SortKey::permissions:
            runs = byNumber(runs, [](const auto& item) -> std::uint64_t { return item.mode; });
            break;
        }
        if (key_ != SortKey::name)
            runs = byText(runs, 0, nameOf);
        for (const auto equal : runs)
            std::ranges::sort(
                equal, {}, [this](const Record& record) { return items_.view(record.row).name; });
    }

private:
    std::int64_t sizeOf(const FileItemView& item) const {
        if (!countsAsFolder(item))
            return item.size;
        const auto known = folderSizes_.find(item.name);
        return known == folderSizes_.end() ? -1 : known->second;
    }

    template <class NumberOf>
    Runs byNumber(const Runs& runs, NumberOf numberOf) {
        Runs equal;
        for (const auto records : runs) {
            for (auto& record : records)
                record.word = numberOf(items_.view(record.row)) ^ flip_;
            sortByWord(records);
            appendEqualRuns(records, equal);
        }
        return equal;
    }

    /// Orders by the name key of a text of each item.
    template <class TextOf>
    Runs byText(const Runs& runs, std::uint64_t flip, TextOf textOf) {
        const auto arena = makeKeys(runs, textOf);
        Runs equal;
        for (const auto records : runs)
            byKeyWords(records, arena, flip, equal);
        return equal;
    }

    /// The keys of all records in `runs`, one behind the other, each filled up to whole words. Made
    /// in the order of the rows, in which the names lie in memory.
    template <class TextOf>
    std::string makeKeys(const Runs& runs, TextOf textOf) {
        constexpr auto wordSize = sizeof(Record::word);
        constexpr std::uint32_t notWanted = std::numeric_limits<std::uint32_t>::max();
        std::vector<std::uint32_t> keyOfRow(items_.size(), notWanted);
        std::size_t count = 0;
        for (const auto records : runs) {
            count += records.size();
            for (const auto& record : records)
                keyOfRow[record.row] = 0;
        }
        std::string arena;
        arena.reserve(count * usualKeyLength);
        for (std::uint32_t row = 0; row < keyOfRow.size(); ++row) {
            if (keyOfRow[row] == notWanted)
                continue;
            keyOfRow[row] = static_cast<std::uint32_t>(arena.size() / wordSize);
            NameKey::appendBytes(textOf(items_.view(row)), arena);
            while (arena.size() % wordSize != 0)
                arena += '\0';
        }
        for (const auto records : runs) {
            for (auto& record : records)
                record.key = keyOfRow[record.row];
        }
        return arena;
    }

    /// Orders by the words of the keys from `record.key` on.
    void byKeyWords(Records records, const std::string& arena, std::uint64_t flip, Runs& equal) {
        for (auto& record : records)
            record.word = wordAt(arena, record.key) ^ flip;
        sortByWord(records);
        Runs undecided;
        appendEqualRuns(records, undecided);
        for (const auto run : undecided) {
            // Keys hold no zero byte before their end, so a word that ends in one is the last.
            if (((run.front().word ^ flip) & 0xFFU) == 0) {
                equal.push_back(run);
                continue;
            }
            for (auto& record : run)
                ++record.key;
            byKeyWords(run, arena, flip, equal);
        }
    }

    /// The next eight bytes of a key as a number of the same order.
    static std::uint64_t wordAt(const std::string& arena, std::uint32_t position) {
        std::uint64_t word = 0;
        std::memcpy(&word, arena.data() + std::size_t{position} * sizeof word, sizeof word);
        return std::endian::native == std::endian::little ? __builtin_bswap64(word) : word;
    }

    /// By distribution, byte by byte from the lowest, where there are many records and their words
    /// differ in few bytes.
    void sortByWord(Records records) {
        std::uint64_t varying = 0;
        for (const auto& record : records)
            varying |= record.word ^ records.front().word;
        std::array<unsigned, sizeof varying> shifts{};
        std::size_t passes = 0;
        for (unsigned shift = 0; shift < 64; shift += 8) {
            if ((varying >> shift & 0xFFU) != 0)
                shifts[passes++] = shift;
        }
        if (records.size() < worthDistributing || passes > mostPasses) {
            std::ranges::sort(records, {}, &Record::word);
            return;
        }
        scratch_.resize(std::max(scratch_.size(), records.size()));
        auto from = records;
        auto to = Records(scratch_).first(records.size());
        for (const auto shift : std::span(shifts).first(passes)) {
            distribute(from, to, shift);
            std::swap(from, to);
        }
        if (from.data() != records.data())
            std::ranges::copy(from, records.begin());
    }

    static void distribute(Records from, Records to, unsigned shift) {
        std::array<std::size_t, 257> begins{};
        const auto byteOf = [shift](const Record& record) { return record.word >> shift & 0xFFU; };
        for (const auto& record : from)
            ++begins[byteOf(record) + 1];
        std::partial_sum(begins.begin(), begins.end(), begins.begin());
        for (const auto& record : from)
            to[begins[byteOf(record)]++] = record;
    }

    static constexpr std::size_t usualKeyLength = 24;
    static constexpr std::size_t worthDistributing = 2048;
    static constexpr std::size_t mostPasses = 5;

    const FileItems& items_;
    const FolderSizes& folderSizes_;
    SortKey key_;
    std::uint64_t flip_; ///< turns the order of words round, or not
    std::vector<Record> scratch_;
};

} // namespace

FileItems sort(const FileItems& items, PanelSort sort, const FolderSizes& folderSizes) {
    std::vector<std::uint32_t> order;
    order.reserve(items.size());
    std::vector<Record> records;
    records.reserve(items.size());
    std::vector<Record> files;
    for (std::uint32_t row = 0; row < items.size(); ++row) {
        const auto item = items.view(row);
        if (item.isParentLink)
            order.push_back(row);
        else if (countsAsFolder(item))
            records.push_back({0, row, 0});
        else
            files.push_back({0, row, 0});
    }
    const auto folderCount = records.size();
    records.insert(records.end(), files.begin(), files.end());
    files = {};

    Sorter sorter(items, sort, folderSizes);
    sorter.run(std::span(records).first(folderCount));
    sorter.run(std::span(records).subspan(folderCount));
    for (const auto& record : records)
        order.push_back(record.row);
    return items.reordered(std::move(order));
}

} // namespace fennik::FileSorter
