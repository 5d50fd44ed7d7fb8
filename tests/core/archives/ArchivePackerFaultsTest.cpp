#include "core/archives/ArchivePacker.h"

#include "core/platform/UnfinishedFile.h"
#include "tests/support/PackFixture.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/TestVolume.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <random>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fennik::test {

namespace {

using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::StartsWith;

namespace fs = std::filesystem;

std::string noise(std::size_t length) {
    std::mt19937 source(7);
    std::string bytes(length, '\0');
    for (auto& byte : bytes)
        byte = static_cast<char>(source());
    return bytes;
}

} // namespace

class ArchivePackerFaultsTest : public PackFixture,
                                public testing::WithParamInterface<ArchiveFormat> {
protected:
    ArchivePackerFaultsTest() {
        temp.folder("from/s/v ní");
        temp.file("from/s/a", noise(300'000));
        temp.file("from/s/v ní/b", noise(10'000));
        temp.link("from/s/odkaz", "a");
        tree = diskTree(temp.path("from"));
    }

    bool packAll(const FileUrl& destination, int level = 1) {
        return pack({from("s")}, destination, {.format = GetParam(), .level = level});
    }
    void startAnew() {
        fs::remove_all(temp.path("to"));
        temp.folder("to");
        context.cancelled = false;
        context.failure.clear();
        context.errors.clear();
        context.steps.clear();
    }
    void expectWhole(const FileUrl& archive) {
        const auto target = unpacked(archive, GetParam());
        EXPECT_EQ(diskTree(target), tree);
        fs::remove_all(target);
    }
    void expectSourcesUntouched() { EXPECT_EQ(diskTree(temp.path("from")), tree); }

    std::map<std::string, std::string> tree;
};

INSTANTIATE_TEST_SUITE_P(All, ArchivePackerFaultsTest, testing::ValuesIn(allArchiveFormats));

TEST_P(ArchivePackerFaultsTest, aCancellationAnywhereLeavesNothing) {
    int stops = 0;
    for (bool isThrough = false; !isThrough; ++stops) {
        startAnew();
        int left = stops;
        context.onCheckpoint = [&] {
            if (left-- == 0)
                context.cancelNow();
        };
        isThrough = packAll(to("a"));
        EXPECT_EQ(isThrough, left >= 0);
        EXPECT_EQ(made(), isThrough ? std::vector<std::string>{"a"} : std::vector<std::string>{});
        EXPECT_EQ(context.steps.size(), isThrough ? 1U : 0U);
        EXPECT_THAT(context.errors, IsEmpty());
        ASSERT_LT(stops, 1000);
    }
    EXPECT_GT(stops, 15);
    expectWhole(to("a"));
    expectSourcesUntouched();
}

TEST_P(ArchivePackerFaultsTest, aCancellationIsHeardWhileTheArchiveIsFinished) {
    // What lies in the buffers of the library, and in its own file, is written at the end.
    temp.file("from/s/velký", noise(3'000'000));
    int checkpoints = 0;
    int atLastItem = 0;
    context.onCheckpoint = [&] { ++checkpoints; };
    context.onName = [&](const std::string&) { atLastItem = checkpoints; };
    ASSERT_TRUE(packAll(to("a")));
    startAnew();
    const int late = checkpoints - 2;
    ASSERT_GT(late, atLastItem);
    checkpoints = 0;
    context.onCheckpoint = [&] {
        if (++checkpoints > late)
            context.cancelNow();
    };
    EXPECT_FALSE(packAll(to("a")));
    EXPECT_LE(checkpoints, late + 2);
    EXPECT_THAT(made(), IsEmpty());
}

TEST_P(ArchivePackerFaultsTest, aFullVolumeKeepsNothing) {
    const auto volume = TestVolume::memory("256k");
    if (!volume)
        GTEST_SKIP() << volume.error();
    const FileUrl destination(volume->path("a"));
    EXPECT_FALSE(packAll(destination));
    EXPECT_EQ(context.failure, "Archiv nejde zapsat: No space left on device");
    EXPECT_THAT(context.errors, ElementsAre(context.failure));
    EXPECT_THAT(context.steps, IsEmpty());
    EXPECT_THAT(diskTree(volume->path()), IsEmpty());
    expectSourcesUntouched();
}

TEST_P(ArchivePackerFaultsTest, everyCallThatFailsIsToldAndLeavesNoWrongArchive) {
    bool isPacked = false;
    const int calls = forEachCall({.errorCode = EIO},
                                  {.prepare = [this] { startAnew(); },
                                   .act = [&] { isPacked = packAll(to("a"), 0); },
                                   .check =
                                       [&] {
                                           if (isPacked)
                                               expectWhole(to("a"));
                                           else
                                               EXPECT_NE(context.failure, "");
                                           EXPECT_EQ(context.steps.size(), isPacked ? 1U : 0U);
                                           EXPECT_EQ(made().size(), isPacked ? 1U : 0U);
                                           expectSourcesUntouched();
                                       }});
    EXPECT_GT(calls, 30);
}

TEST_P(ArchivePackerFaultsTest, shortReadsAndWritesAndSignalsChangeNothing) {
    for (const auto& fault :
         {Fault{.calls = {SystemCall::read, SystemCall::write}, .mostBytes = 7777},
          Fault{.calls = {SystemCall::read}, .number = 2, .errorCode = EINTR},
          Fault{.calls = {SystemCall::write}, .number = 1, .errorCode = EINTR}}) {
        startAnew();
        {
            const FaultInjection injection(fault);
            ASSERT_TRUE(packAll(to("a"), 0)) << context.failure;
            EXPECT_TRUE(injection.struck());
        }
        expectWhole(to("a"));
    }
}

TEST_P(ArchivePackerFaultsTest, aKillAnywhereLeavesAWholeArchiveOrNoneAndTheNextPackingTidiesUp) {
    const int calls =
        forEachCall({.endsProcess = true},
                    {.prepare = [this] { startAnew(); },
                     .act = [this] { packAll(to("a"), 0); },
                     .check =
                         [this] {
                             for (const auto& name : made())
                                 EXPECT_TRUE(name == "a" || UnfinishedFile::isName(name)) << name;
                             if (fs::exists(to("a").path()))
                                 expectWhole(to("a"));
                             expectSourcesUntouched();
                             ASSERT_TRUE(packAll(to("b"), 0)) << context.failure;
                             EXPECT_THAT(made(), AnyOf(ElementsAre("a", "b"), ElementsAre("b")));
                         }});
    EXPECT_GT(calls, 30);
}

class PackingRacesTest : public PackFixture {
protected:
    PackingRacesTest() { temp.file("from/x", std::string(600'000, 'x')); }

    /// Does something right before that item is opened.
    void atItem(const std::string& name, const std::function<void()>& act) {
        context.onName = [name, act](const std::string& item) {
            if (item == name)
                act();
        };
    }
    /// The same when a part of the first file has been read.
    void onTheWay(const std::function<void()>& act) {
        context.onBytes = [act, isFirst = true](std::int64_t) mutable {
            if (std::exchange(isFirst, false))
                act();
        };
    }
    void expectFailure(const std::string& sentence) {
        EXPECT_FALSE(pack({from("x")}, to("a")));
        EXPECT_EQ(context.failure, sentence);
        EXPECT_THAT(made(), IsEmpty());
    }
    /// With that other item, which does not suffer.
    void expectLeftOut(const std::string& sentence) {
        temp.file("from/jiný", "y");
        EXPECT_TRUE(pack({from("x"), from("jiný")}, to("a")));
        EXPECT_THAT(context.errors, ElementsAre(sentence));
        EXPECT_EQ(context.failure, "");
        EXPECT_THAT(diskTree(unpacked(to("a"), ArchiveFormat::zip)),
                    ElementsAre(testing::Pair("jiný", "y")));
    }
    void replace(const std::function<void()>& make) {
        atItem("x", [this, make] {
            fs::remove(from("x").path());
            make();
        });
    }
};

TEST_F(PackingRacesTest, aSourceThatShrinksFailsThePacking) {
    onTheWay([this] { fs::resize_file(from("x").path(), 200'000); });
    expectFailure("„x“: čtení skončilo předčasně");
}

TEST_F(PackingRacesTest, aSourceThatHasShrunkBeforeItsTurnFailsThePacking) {
    atItem("x", [this] { fs::resize_file(from("x").path(), 10); });
    expectFailure("„x“: čtení skončilo předčasně");
}

TEST_F(PackingRacesTest, aSourceThatIsWrittenWhileItIsReadIsReported) {
    const std::string sentence = "„x“ se během balení měnil, a tak v archivu nemusí být celý.";
    onTheWay([this] { std::ofstream(from("x").path(), std::ios::app) << "y"; });
    EXPECT_TRUE(pack({from("x")}, to("a")));
    EXPECT_THAT(context.errors, ElementsAre(sentence));
    EXPECT_THAT(diskTree(unpacked(to("a"), ArchiveFormat::zip)),
                ElementsAre(testing::Pair("x", std::string(600'000, 'x'))));

    context.errors.clear();
    onTheWay([this] { std::fstream(from("x").path(), std::ios::in | std::ios::out) << "y"; });
    EXPECT_TRUE(pack({from("x")}, to("b")));
    EXPECT_THAT(context.errors, ElementsAre(sentence));
    EXPECT_EQ(context.failure, "");
}

TEST_F(PackingRacesTest, aSourceThatHasGrownBeforeItsTurnIsPackedWhole) {
    atItem("x", [this] { fs::resize_file(from("x").path(), 700'000); });
    EXPECT_TRUE(pack({from("x")}, to("a")));
    EXPECT_THAT(context.errors, IsEmpty());
    EXPECT_EQ(context.totalBytes, 700'000);
    EXPECT_EQ(context.doneBytes, 700'000);
    EXPECT_EQ(diskTree(unpacked(to("a"), ArchiveFormat::zip))["x"].size(), 700'000U);
}

TEST_F(PackingRacesTest, aFileThatDoesNotSayHowLongItIsIsReported) {
    EXPECT_TRUE(pack({FileUrl("/proc/cpuinfo")}, to("a")));
    EXPECT_THAT(context.errors,
                ElementsAre("„cpuinfo“ se během balení měnil, a tak v archivu nemusí být celý."));
}

TEST_F(PackingRacesTest, whatTakesThePlaceOfAFileIsNeitherWaitedForNorFollowed) {
    replace([this] { ASSERT_EQ(mkfifo(from("x").path().c_str(), 0600), 0); });
    expectLeftOut("„x“ nejde zabalit: není to soubor ani složka.");
}

TEST_F(PackingRacesTest, aLinkThatTakesThePlaceOfAFileIsNotFollowed) {
    temp.file("tajné", "tajné");
    replace([this] { temp.link("from/x", temp.path("tajné")); });
    expectLeftOut("„x“ nejde zabalit: není to soubor ani složka.");
}

TEST_F(PackingRacesTest, anotherFileIsNotTakenForTheOneThatWasFound) {
    temp.file("from/y", std::string(600'000, 'y'));
    atItem("x", [this] { fs::rename(from("y").path(), from("x").path()); });
    expectFailure("„x“ nejde přečíst: mezitím ho nahradilo něco jiného");
}

TEST_F(PackingRacesTest, aFolderThatIsReplacedByALinkIsNotEntered) {
    temp.folder("from/s");
    temp.folder("jinde");
    temp.file("from/s/x", "x");
    temp.file("jinde/x", "tajné");
    atItem("x", [this] {
        fs::rename(from("s").path(), from("pryč").path());
        temp.link("from/s", temp.path("jinde"));
    });
    EXPECT_TRUE(pack({from("s")}, to("a")));
    EXPECT_EQ(diskTree(unpacked(to("a"), ArchiveFormat::zip))["s/x"], "x");
}

TEST_F(PackingRacesTest, aFileThatTakesTheNameMeanwhileIsNotReplaced) {
    onTheWay([this] { temp.file("to/a", "cizí"); });
    EXPECT_FALSE(pack({from("x")}, to("a")));
    EXPECT_EQ(context.failure, "Archiv nejde uložit: File exists");
    EXPECT_EQ(diskTree(temp.path("to")), (std::map<std::string, std::string>{{"a", "cizí"}}));
}

TEST_F(PackingRacesTest, aStrangerInPlaceOfTheUnfinishedArchiveIsNotTouched) {
    onTheWay([this] {
        const auto unfinished = to(made().front()).path();
        fs::remove(unfinished);
        std::ofstream(unfinished) << "cizí";
    });
    EXPECT_FALSE(pack({from("x")}, to("a")));
    EXPECT_THAT(context.failure, StartsWith("Archiv nejde uložit: "));
    const auto left = diskTree(temp.path("to"));
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left.begin()->second, "cizí");
}

TEST_F(PackingRacesTest, anUnfinishedArchiveThatCannotBeRemovedIsToldOf) {
    onTheWay([this] { context.cancelNow(); });
    const FaultInjection injection({.calls = {SystemCall::unlinkat}, .errorCode = EPERM});
    EXPECT_FALSE(pack({from("x")}, to("a")));
    ASSERT_EQ(made().size(), 1U);
    const auto left = made().front();
    EXPECT_THAT(context.errors, ElementsAre("Rozpracovaný soubor „" + left +
                                            "“ nejde odstranit: Operation not permitted"));
    EXPECT_THAT(context.steps, ElementsAre(testing::VariantWith<UndoSteps::Created>(
                                   UndoSteps::Created{to(left)})));
}

TEST_F(PackingRacesTest, onlyAbandonedFilesOfOneselfAreTidiedUp) {
    const auto named = [](char digit) {
        return ".fennik-f81d4fae-7dec-41d0-a765-00a0c91e6bf" + std::string(1, digit);
    };
    const std::vector<std::string> kept{named('1'),         named('2'),  named('3'),
                                        named('4'),         ".fennik-x", named('5') + "x",
                                        ".fennik-renamed-x"};
    temp.file("to/" + named('0'), "opuštěný");
    temp.file("to/" + named('1'), "zamčený");
    temp.file("to/" + named('2'), "cizí");
    temp.folder("to/" + named('3'));
    temp.link("to/" + named('4'), from("x").path());
    for (const auto& name : {kept[4], kept[5], kept[6]})
        temp.file("to/" + name, "jiný");
    const int locked = open(to(named('1')).path().c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(locked, LOCK_EX), 0);
    const bool isForeign = chown(to(named('2')).path().c_str(), 65534, 65534) == 0;
    ASSERT_TRUE(pack({from("x")}, to("a")));
    close(locked);
    auto names = made();
    EXPECT_THAT(names, testing::Not(Contains(named('0'))));
    if (!isForeign) // only root can give files away
        names.push_back(named('2'));
    EXPECT_THAT(names, IsSupersetOf(kept));
}

TEST_F(PackingRacesTest, packingsIntoOneFolderDoNotDisturbEachOther) {
    onTheWay([this] {
        RecordingContext other{TransferKind::pack, trash};
        EXPECT_TRUE(DirectPacker().pack({from("x")}, to("b"), {}, other));
    });
    EXPECT_TRUE(pack({from("x")}, to("a")));
    EXPECT_THAT(made(), ElementsAre("a", "b"));
}

} // namespace fennik::test
