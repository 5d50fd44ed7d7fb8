// A helper that reads and makes real archives, and does to others what their names say.
#include "core/archives/ArchiveReader.h"
#include "core/archives/helper/ArchiveHelper.h"
#include "core/platform/UnfinishedFile.h"
#include "tests/support/Processes.h"
#include "tests/support/UsedUpMemory.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using namespace fennik;

StreamEntry fileNamed(std::string path) {
    return {.entry = {.path = std::move(path)}};
}

/// None of them may be believed.
std::vector<StreamEntry> lies() {
    using namespace std::string_literals;
    constexpr auto hardlink = ArchiveEntry::Kind::hardlink;
    return {
        fileNamed(""),
        fileNamed("../up"),
        fileNamed("/root"),
        fileNamed("a//b"),
        fileNamed("a/./b"),
        fileNamed("a/"),
        fileNamed("cut\0off"s),
        fileNamed("\xff"),
        fileNamed(std::string(30'000, 'x')),
        {.entry = {.path = "x", .size = -1}},
        {.entry = {.path = "x", .mode = 0100644}},
        {.entry = {.path = "x", .modified = {.seconds = 0, .nanoseconds = 1'000'000'000}}},
        {.entry = {.path = "x", .kind = hardlink}},
        {.entry = {.path = "x", .kind = hardlink, .linkTarget = "../up"}},
        {.entry = {.path = "x", .kind = ArchiveEntry::Kind::symlink, .linkTarget = "cut\0off"s}},
    };
}

/// As a library does that has lost its way.
[[noreturn]] void spin() {
    for (volatile unsigned round = 0;;)
        round = round + 1;
}

void useProcessor(double seconds) {
    const auto end = clock() + static_cast<clock_t>(seconds * CLOCKS_PER_SEC);
    while (clock() < end) {
    }
}

/// Entries made by a function that is told how many there were before.
class MadeStream final : public EntryStream {
public:
    using Make = std::function<Result<std::optional<StreamEntry>>(int)>;
    explicit MadeStream(Make make) : make_(std::move(make)) {}

    Result<std::optional<StreamEntry>> next() override {
        auto met = make_(made_++);
        if (met && *met)
            path_ = (*met)->entry.path;
        blocks_ = 0;
        return met;
    }
    /// The entry "holes" has data at its beginning and far behind it, "broken" fails after some,
    /// and "endless" never ends.
    Result<Block> read() override {
        static const std::vector<std::byte> piece(300'000, std::byte{7});
        const auto number = blocks_++;
        if (path_ == "holes" && number < 2)
            return Block{.offset = number * 1'000'000, .bytes = piece};
        if (path_ == "holes")
            return Block{.offset = 2'000'000};
        if (path_ == "broken" && number == 1)
            return std::unexpected(ArchiveError{ArchiveError::Case::wrongPassword});
        if (path_ == "broken" || path_ == "endless")
            return Block{.offset = number * 300'000, .bytes = piece};
        if (path_ == "backwards" && number < 2)
            return Block{.offset = 1'000'000 - number * 1'000'000, .bytes = piece};
        return Block{};
    }
    const ArchiveFacts& facts() const override { return facts_; }

private:
    Make make_;
    ArchiveFacts facts_ = {.formatName = "made", .formatFamily = 7};
    int made_ = 0;
    std::int64_t blocks_ = 0;
    std::string path_;
};

/// What an archive of this name is; none: a real one.
MadeStream::Make makerFor(std::string_view name) {
    using Met = EntryStream::Result<std::optional<StreamEntry>>;
    const auto afterOwnNumber = [](std::function<void()> act) {
        return [act = std::move(act)](int number) -> Met {
            if (number == 0)
                return fileNamed(std::to_string(getpid()));
            act();
            return std::nullopt;
        };
    };
    if (name == "hangs")
        return afterOwnNumber([] {
            while (true)
                pause();
        });
    if (name == "spins")
        return afterOwnNumber([] { spin(); });
    if (name == "aborts")
        return afterOwnNumber([] { std::abort(); });
    if (name == "crashes")
        return afterOwnNumber([] { raise(SIGSEGV); });
    if (name == "ends early")
        return afterOwnNumber([] { std::_Exit(0); });
    if (name == "closes its output")
        return afterOwnNumber([] {
            close(STDOUT_FILENO);
            spin();
        });
    if (name == "eats memory")
        return afterOwnNumber([] { test::useUpMemory(); });
    if (name == "writes garbage")
        return afterOwnNumber([] {
            const std::vector<char> garbage(1 << 20, 'x');
            while (write(STDOUT_FILENO, garbage.data(), garbage.size()) > 0) {
            }
        });
    if (name == "works long")
        return [](int number) -> Met {
            useProcessor(0.4);
            return number < 6 ? Met(fileNamed(std::to_string(number))) : Met(std::nullopt);
        };
    if (name == "tells of itself")
        return [](int number) -> Met {
            rlimit core{};
            getrlimit(RLIMIT_CORE, &core);
            std::vector<std::string> told{"core " + std::to_string(core.rlim_cur)};
            for (const auto& [descriptor, target] : test::descriptorsOf("self"))
                told.push_back(std::to_string(descriptor) + ' ' + target.substr(0, 5));
            if (number == static_cast<int>(told.size()))
                return std::nullopt;
            auto entry = fileNamed("x" + std::to_string(number));
            entry.entry.kind = ArchiveEntry::Kind::symlink;
            entry.entry.linkTarget = told[static_cast<std::size_t>(number)];
            return entry;
        };
    if (name == "has data")
        return [](int number) -> Met {
            constexpr std::array names{"holes", "broken", "empty", "backwards"};
            if (number == static_cast<int>(names.size()))
                return std::nullopt;
            return fileNamed(names.at(static_cast<std::size_t>(number)));
        };
    if (name == "is endless")
        return [](int) -> Met { return fileNamed("endless"); };
    if (name.starts_with("lies "))
        return
            [lie = lies().at(std::stoul(std::string(name.substr(5))))](int) -> Met { return lie; };
    return {};
}

EntryStream::Result<std::unique_ptr<EntryStream>>
open(int descriptor, const ArchiveRequest& request, IsCancelled isCancelled) {
    if (auto make = makerFor(request.url.lastComponent()))
        return std::make_unique<MadeStream>(std::move(make));
    return ArchiveReader::open(descriptor, request, std::move(isCancelled));
}

/// Packs, or does to the archive what its name says.
class MadePacker final : public ArchivePacker {
public:
    bool pack(const std::vector<FileUrl>& sources, const FileUrl& destination,
              const PackOptions& options, OperationContext& context) const override {
        const auto name = destination.lastComponent();
        const auto folder = destination.parent();
        if (name == "tells of itself") {
            // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody changes the environment
            context.addError(std::string("TMPDIR ") + std::getenv("TMPDIR"));
            for (const auto& [descriptor, target] : test::descriptorsOf("self"))
                context.addError(std::to_string(descriptor) + ' ' + target.substr(0, 5));
            return true;
        }
        if (name == "lies") {
            context.addStep(UndoSteps::Created{folder.appending("precious")});
            return true;
        }
        if (name == "counts down") {
            context.bytesWritten(-1);
            return true;
        }
        if (name == "crashes at the end") {
            context.addStep(UndoSteps::Created{destination});
            std::abort();
        }
        auto held = std::make_shared<const OpenFolder>(
            OpenFolder::open(folder.path(), FollowLinks::yes).value());
        if (name == "crashes") {
            const auto file = UnfinishedFile::create(held);
            std::abort();
        }
        if (name == "spins") {
            const auto file = UnfinishedFile::create(held);
            context.setCurrentName(std::to_string(getpid()));
            static_cast<void>(context.checkpoint());
            spin();
        }
        if (name == "goes on and on") {
            const auto file = UnfinishedFile::create(held);
            context.setCurrentName(std::to_string(getpid()));
            while (context.checkpoint() == Checkpoint::goOn)
                context.bytesWritten(1);
            return false;
        }
        return DirectPacker().pack(sources, destination, options, context);
    }
};

} // namespace

int main() {
    const MadePacker packer;
    return runArchiveHelper({.open = open,
                             .packer = packer,
                             .memory = 512 << 20,
                             .processorTime = std::chrono::seconds(1)});
}
