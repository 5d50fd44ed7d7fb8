// Takes the entries of an archive that the input describes out into a folder, and looks for what is
// changed beside it and what is left in it.
#include "core/archives/ArchiveExtractor.h"
#include "core/archives/EntryPath.h"
#include "tests/core/archives/ScriptedArchives.h"
#include "tests/fuzz/FuzzFile.h"
#include "tests/support/DiskTree.h"
#include "tests/support/RecordingContext.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestTrash.h"

#include <array>
#include <fuzzer/FuzzedDataProvider.h>
#include <string>

namespace {

using namespace fennik;
using namespace fennik::test;

constexpr std::size_t mostEntries = 12;

/// Out of a few components, so that entries meet.
std::string madePath(FuzzedDataProvider& input) {
    static constexpr std::array components = {"a", "b", "c", "..", ".", "", "outside", "new"};
    std::string path;
    const auto count = input.ConsumeIntegralInRange<std::size_t>(1, 4);
    for (std::size_t i = 0; i < count; ++i)
        path += std::string(i > 0 ? "/" : "") + input.PickValueInArray(components);
    return path;
}

ScriptedEntry madeEntry(FuzzedDataProvider& input, const std::string& outside) {
    auto path = entryPath(madePath(input));
    const bool isRefused = !path || path->empty();
    const auto name = isRefused ? std::string("refused") : *path;
    auto entry = ScriptedEntry::folder(name, input.ConsumeIntegral<std::uint16_t>() & 07777U);
    switch (input.ConsumeIntegralInRange(0, 4)) {
    case 0:
        entry = ScriptedEntry::link(name, input.ConsumeBool() ? outside : madePath(input));
        break;
    case 1:
        entry = ScriptedEntry::hardLink(name, entryPath(madePath(input)).value_or("a"));
        break;
    case 2:
        break;
    default:
        entry = ScriptedEntry::file(name, input.ConsumeRandomLengthString(20));
        entry.met.isSpecial = input.ConsumeIntegralInRange(0, 7) == 7;
        entry.met.declaresSize = input.ConsumeBool();
        if (input.ConsumeBool())
            entry.met.entry.size = input.ConsumeIntegralInRange(0, 30);
        if (input.ConsumeIntegralInRange(0, 7) == 7)
            entry.error = ArchiveError{ArchiveError::Case::damaged, "x"};
    }
    entry.met.isRefused = isRefused;
    return entry;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const TempFolder temp;
    for (const auto* name : {"target", "target/a", "outside", "trash"})
        temp.folder(name);
    temp.file("outside/sentinel", "untouched");
    temp.file("target/b", "before");
    temp.link("target/c", temp.path("outside"));

    ScriptedArchives archives;
    while (input.remaining_bytes() > 0 && archives.entries.size() < mostEntries)
        archives.entries.push_back(madeEntry(input, temp.path("outside")));
    const TestTrash trash(FileUrl(temp.path("trash")));
    RecordingContext context(TransferKind::extract, trash);
    constexpr std::array choices = {ConflictChoice::overwrite, ConflictChoice::overwriteOlder,
                                    ConflictChoice::skip, ConflictChoice::rename,
                                    ConflictChoice::cancel};
    context.choice = input.PickValueInArray(choices);
    ArchiveExtractor extractor(archives, context,
                               [](const FileUrl&, const ArchiveError&) { return std::nullopt; });
    const auto outcome = extractor.run({{.archive = FileUrl(temp.path("x.tar")),
                                         .target = FileUrl(temp.path("target")),
                                         .ownFolder = input.ConsumeBool()}});

    require(outcome.size() == 1, "every archive has an outcome");
    require(diskTree(temp.path("outside")) ==
                std::map<std::string, std::string>{{"sentinel", "untouched"}},
            "nothing is written outside the target");
    for (const auto& [path, content] : diskTree(temp.path("target"))) {
        require(content != "special", "no devices are made");
        require(!path.contains(".fennik-"), "nothing unfinished is left");
    }
    if (outcome.front() == PairOutcome::failed)
        require(!context.errors.empty(), "what fails is reported");
    return 0;
}
