#include "core/listing/FileSorter.h"

#include "core/listing/NameKey.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
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

/// Calls `each` for the runs of two and more records with equal words.
template <class Each>
void forEqualRuns(Records records, Each each) {
    for (std::size_t begin = 0; begin < records.size();) {
        auto end = begin + 1;
        while (end < records.size() && records[end].word == records[begin].word)
            ++end;
        if (end - begin > 1)
            each(records.subspan(begin, end - begin));
        begin = end;
    }
}

/// Sorts records stage by stage: each stage orders the runs that the stages before left equal.
class Sorter {
public:
    Sorter(const FileItems& items, PanelSort sort, const FolderSizes& folderSizes)
        : items_(items),
          sort_(sort),
          folderSizes_(folderSizes),
          flip_(sort.ascending ? 0 : std::numeric_limits<std::uint64_t>::max()) {}

    void run(Records records) {
        switch (sort_.key) {
        case SortKey::name:
            byKeyBytes(
                records, flip_, [](const FileItemView& item) { return item.name; },
                [this](Records equal) { byRawName(equal); });
            break;
        case SortKey::ext:
            byKeyBytes(
                records, flip_,
                [](const FileItemView& item) { return item.fileExtension().value_or(""); },
                [this](Records equal) { byName(equal); });
            break;
        case SortKey::size:
            byWord(
                records, [this](const FileItemView& item) { return ordered(sizeOf(item)); },
                [this](Records equal) { byName(equal); });
            break;
        case SortKey::modified:
            byWord(
                records, [](const FileItemView& item) { return ordered(item.modified.seconds); },
                [this](Records equal) { byNanoseconds(equal); });
            break;
        case SortKey::permissions:
            byWord(
                records, [](const FileItemView& item) { return std::uint64_t{item.mode}; },
                [this](Records equal) { byName(equal); });
            break;
        }
    }

private:
    std::int64_t sizeOf(const FileItemView& item) const {
        if (!countsAsFolder(item))
            return item.size;
        const auto known = folderSizes_.find(item.name);
        return known == folderSizes_.end() ? -1 : known->second;
    }

    template <class WordOf, class ThenBy>
    void byWord(Records records, WordOf wordOf, ThenBy thenBy) {
        for (auto& record : records)
            record.word = wordOf(items_.view(record.row)) ^ flip_;
        std::ranges::sort(records, {}, &Record::word);
        forEqualRuns(records, thenBy);
    }

    void byNanoseconds(Records records) {
        byWord(
            records,
            [](const FileItemView& item) { return std::uint64_t{item.modified.nanoseconds}; },
            [this](Records equal) { byName(equal); });
    }

    /// The tie-break: always A to Z.
    void byName(Records records) {
        byKeyBytes(
            records, 0, [](const FileItemView& item) { return item.name; },
            [this](Records equal) { byRawName(equal); });
    }

    template <class TextOf, class ThenBy>
    void byKeyBytes(Records records, std::uint64_t flip, TextOf textOf, ThenBy thenBy) {
        // The arena serves one stage of one run at a time: a stage that calls the next one no
        // longer needs its own keys of that run, but those of the runs to come, so each has one.
        std::string arena;
        arena.reserve(records.size() * 24);
        for (auto& record : records) {
            record.key = static_cast<std::uint32_t>(arena.size() / sizeof record.word);
            NameKey::appendBytes(textOf(items_.view(record.row)), arena);
            while (arena.size() % sizeof record.word != 0)
                arena += '\0';
        }
        byArena(records, arena, flip, thenBy);
    }

    /// Orders by the key bytes from `record.key` on, eight at a time.
    template <class ThenBy>
    void byArena(Records records, const std::string& arena, std::uint64_t flip, ThenBy thenBy) {
        for (auto& record : records)
            record.word = wordAt(arena, record.key) ^ flip;
        std::ranges::sort(records, {}, &Record::word);
        forEqualRuns(records, [&](Records equal) {
            // Keys hold no zero byte before their end, so a word that ends in one is the last.
            if (((equal.front().word ^ flip) & 0xFFU) == 0) {
                thenBy(equal);
                return;
            }
            for (auto& record : equal)
                ++record.key;
            byArena(equal, arena, flip, thenBy);
        });
    }

    /// The next eight bytes of a key as a number of the same order.
    static std::uint64_t wordAt(const std::string& arena, std::uint32_t position) {
        std::uint64_t word = 0;
        std::memcpy(&word, arena.data() + position * sizeof word, sizeof word);
        return std::endian::native == std::endian::little ? __builtin_bswap64(word) : word;
    }

    void byRawName(Records records) {
        std::ranges::sort(records, {},
                          [this](const Record& record) { return items_.view(record.row).name; });
    }

    const FileItems& items_;
    PanelSort sort_;
    const FolderSizes& folderSizes_;
    std::uint64_t flip_;
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
