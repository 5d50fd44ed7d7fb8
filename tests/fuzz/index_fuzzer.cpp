// Reads any bytes as an archive, and holds what comes out against what index and stream promise.
#include "core/archives/ArchiveIndex.h"
#include "core/archives/ArchiveReader.h"
#include "core/archives/EntryPath.h"
#include "core/base/Utf8.h"
#include "tests/fuzz/FuzzFile.h"

#include <string>

namespace {

using namespace fennik;
using test::require;

/// So that a small input with much in it comes to an end.
constexpr int mostQuestions = 20'000;
constexpr std::int64_t mostData = 1 << 20;

std::unique_ptr<ArchiveReader> opened(std::span<const std::uint8_t> bytes,
                                      const ArchiveRequest& request) {
    auto isCancelled = [asked = 0]() mutable { return ++asked > mostQuestions; };
    auto reader = ArchiveReader::open(test::fileHolding(bytes), request, isCancelled);
    return reader ? *std::move(reader) : nullptr;
}

/// Bytes of all files below `folder`, which the index has to know.
std::int64_t walk(const ArchiveIndex& index, const std::string& folder) {
    std::int64_t sum = 0;
    for (const auto name : index.children(folder)) {
        require(Utf8::isValid(name), "names are UTF-8");
        require(!name.empty() && !name.contains('/') && name != "." && name != "..",
                "names are components");
        const auto path = folder.empty() ? std::string(name) : folder + '/' + std::string(name);
        const auto entry = index.find(path);
        require(entry && entry->path == path && entry->size >= 0, "children are found");
        const bool isFolder = entry->kind == ArchiveEntry::Kind::directory;
        const auto size = isFolder ? walk(index, path) : entry->size;
        if (__builtin_add_overflow(sum, size, &sum))
            sum = std::numeric_limits<std::int64_t>::max();
    }
    require(sum == index.folderSize(folder), "sizes of folders are sums");
    return sum;
}

void readData(EntryStream& stream) {
    std::int64_t end = 0;
    while (end < mostData) {
        const auto block = stream.read();
        if (!block || block->bytes.empty())
            return;
        require(block->offset >= end, "data does not go back");
        end = block->offset + static_cast<std::int64_t>(block->bytes.size());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span bytes(data, size);
    ArchiveRequest request{.url = FileUrl("/archive.gz"), .password = "heslo"};
    auto reader = opened(bytes, request);
    if (!reader)
        return 0;
    const auto index = ArchiveIndex::read(*reader, request.url);
    if (!index) {
        const bool isSilent = index.error().kind == ArchiveError::Case::cancelled;
        require(isSilent || Utf8::isValid(index.error().message()), "failures are sentences");
        return 0;
    }
    walk(**index, "");
    require((*index)->totalSize() >= 0 && (*index)->fileCount() >= 0, "sums are not negative");

    request.charset = (*index)->charset();
    reader = opened(bytes, request);
    require(reader != nullptr, "what was opened opens again");
    for (auto met = reader->next(); met && *met; met = reader->next()) {
        const auto& entry = (*met)->entry;
        require(Utf8::isValid(entry.path) && !(*met)->hasForeignName, "paths are decoded");
        if (!(*met)->isRefused) {
            require(!entry.path.empty() && !entry.path.contains("//"), "paths are normal");
            require((*index)->find(entry.path).has_value(), "what is met is in the index");
        }
        readData(*reader);
    }
    return 0;
}
