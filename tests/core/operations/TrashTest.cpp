#include "core/base/PathText.h"
#include "core/base/PosixError.h"
#include "core/operations/FileActions.h"
#include "core/operations/Trashes.h"
#include "core/platform/TrashCan.h"
#include "tests/support/DiskTree.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestVolume.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fennik::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

namespace fs = std::filesystem;

namespace {

using Trashed = std::expected<FileUrl, std::string>;

const std::string ownTrash = ".Trash-" + std::to_string(geteuid());

void write(const std::string& path, std::string_view content) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

std::string recordOf(const FileUrl& place) {
    return contentOf(place.parent().parent().path() + "/info/" +
                     std::string(place.lastComponent()) + ".trashinfo");
}

/// The path that a record holds; empty where it is none.
std::string recordedPath(const std::string& record) {
    constexpr std::string_view begin = "[Trash Info]\nPath=";
    if (!record.starts_with(begin))
        return {};
    const auto path = record.substr(begin.size(), record.find('\n', begin.size()) - begin.size());
    return pathOfFileUrl((path.starts_with('/') ? "file://" : "file:///") + path).value_or("");
}

std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename());
    return names;
}

/// Whether each item of a trash has a whole record. There may be records without an item.
testing::AssertionResult isRecorded(const std::string& trash) {
    if (!fs::exists(trash + "/files"))
        return testing::AssertionSuccess();
    for (const auto& name : namesIn(trash + "/files"))
        if (recordedPath(contentOf(trash + "/info/" + name + ".trashinfo")).empty())
            return testing::AssertionFailure() << name << " has no record";
    return testing::AssertionSuccess();
}

std::expected<void, std::string> copyAndDelete(const FileUrl& from, const FileUrl& to) {
    fs::copy(from.path(), to.path(), fs::copy_options::recursive);
    fs::remove_all(from.path());
    return {};
}

std::expected<void, std::string> refuseToCopy(const FileUrl&, const FileUrl&) {
    return std::unexpected("kopie se nepovedla");
}

Trashed trash(const std::string& path) {
    return TrashCan::trash(FileUrl(path), refuseToCopy);
}

std::string refusal(const std::string& path) {
    const auto trashed = trash(path);
    return trashed ? "trashed" : trashed.error();
}

/// Gives the home folder and the trash in it places of their own, for one test.
class Homes {
public:
    Homes(const std::string& home, const std::string& data)
        : home_(variable("HOME")), data_(variable("XDG_DATA_HOME")) {
        fs::create_directories(home);
        setenv("HOME", home.c_str(), 1);
        setenv("XDG_DATA_HOME", data.c_str(), 1);
    }
    ~Homes() {
        restore("HOME", home_);
        restore("XDG_DATA_HOME", data_);
    }
    Homes(const Homes&) = delete;
    Homes& operator=(const Homes&) = delete;

private:
    static std::optional<std::string> variable(const char* name) {
        const char* value = std::getenv(name);
        return value == nullptr ? std::nullopt : std::optional<std::string>(value);
    }
    static void restore(const char* name, const std::optional<std::string>& value) {
        if (value)
            setenv(name, value->c_str(), 1);
        else
            unsetenv(name);
    }

    std::optional<std::string> home_;
    std::optional<std::string> data_;
};

} // namespace

class TrashTest : public testing::Test {
protected:
    std::string path(std::string_view name) const { return temp.path(name); }

    TempFolder temp;
    std::string homeTrash = path("data/Trash");
    Homes homes{path("home"), path("data")};
};

TEST_F(TrashTest, notesWhereAnItemLayAndChangesNothingInIt) {
    const std::string name = "žluť 100%+\n\xFF.txt";
    const auto item = path("home/" + name);
    write(item, "data");
    const auto place = trash(item);
    ASSERT_TRUE(place);
    EXPECT_EQ(place->path(), homeTrash + "/files/" + name);
    EXPECT_EQ(contentOf(place->path()), "data");
    EXPECT_FALSE(fs::exists(item));
    const auto record = recordOf(*place);
    EXPECT_EQ(recordedPath(record), item);
    EXPECT_THAT(record, MatchesRegex("\\[Trash Info\\]\nPath=/[-A-Za-z0-9._~/%]*/home/"
                                     "%C5%BElu%C5%A5%20100%25%2B%0A%FF\\.txt\n"
                                     "DeletionDate=[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9:]{8}\n"));
    for (const auto* folder : {"", "/files", "/info"})
        EXPECT_EQ(fs::status(homeTrash + folder).permissions(), fs::perms::owner_all);

    fs::create_symlink("nowhere", path("link"));
    EXPECT_EQ(fs::read_symlink(trash(path("link"))->path()), "nowhere");
    write(path("folder/.hidden/file"), "deep");
    const auto before = diskTree(path("folder"));
    EXPECT_EQ(diskTree(trash(path("folder"))->path()), before);
}

TEST_F(TrashTest, everyItemGetsANameOfItsOwn) {
    write(path("a.txt"), "1");
    EXPECT_EQ(trash(path("a.txt"))->lastComponent(), "a.txt");
    write(path("a.txt"), "2");
    write(homeTrash + "/files/a 2.txt", "left by somebody without a record");
    EXPECT_EQ(trash(path("a.txt"))->lastComponent(), "a 3.txt");
    EXPECT_EQ(contentOf(homeTrash + "/files/a 2.txt"), "left by somebody without a record");
    EXPECT_FALSE(fs::exists(homeTrash + "/info/a 2.txt.trashinfo"));

    std::string longName;
    for (int i = 0; i < 127; ++i)
        longName += "ž";
    for (const int bytes : {244, 242}) {
        write(path(longName), "long");
        const auto place = trash(path(longName));
        ASSERT_TRUE(place);
        EXPECT_EQ(place->lastComponent().substr(0, static_cast<std::size_t>(bytes)),
                  longName.substr(0, static_cast<std::size_t>(bytes)));
        EXPECT_EQ(recordedPath(recordOf(*place)), path(longName));
    }
}

TEST_F(TrashTest, manyProcessesTrashTheSameNameAtOnce) {
    constexpr int processes = 8;
    constexpr int items = 50;
    std::vector<pid_t> children;
    for (int process = 0; process < processes; ++process) {
        children.push_back(fork());
        if (children.back() != 0)
            continue;
        bool isDone = true;
        for (int i = 0; i < items; ++i) {
            const auto item = path(std::to_string(process) + "/same.txt");
            write(item, std::to_string(process * items + i));
            isDone = isDone && trash(item);
        }
        _exit(isDone ? 0 : 1);
    }
    for (const auto child : children) {
        int status = 1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    std::set<std::string> contents;
    for (const auto& name : namesIn(homeTrash + "/files"))
        contents.insert(contentOf(homeTrash + "/files/" + name));
    EXPECT_THAT(contents, SizeIs(processes * items));
    EXPECT_THAT(namesIn(homeTrash + "/info"), SizeIs(processes * items));
    EXPECT_TRUE(isRecorded(homeTrash));
}

TEST_F(TrashTest, refusesWhatMustNeverGoThere) {
    write(path("home/file"), "in the trash");
    const auto inTrash = trash(path("home/file"));
    ASSERT_TRUE(inTrash);
    fs::create_directory_symlink(path("data"), path("way to data"));
    const auto before = diskTree(path(""));
    EXPECT_EQ(refusal("/"), "je to připojený disk.");
    EXPECT_EQ(refusal("/proc"), "je to připojený disk.");
    EXPECT_EQ(refusal(path("home")), "je to domovská složka.");
    EXPECT_EQ(refusal(homeTrash), "je to samotný Koš.");
    EXPECT_EQ(refusal(path("way to data/Trash")), "je to samotný Koš.");
    EXPECT_EQ(refusal(path("data")), "obsahuje samotný Koš.");
    EXPECT_EQ(refusal(inTrash->path()), "už leží v Koši.");
    EXPECT_EQ(refusal(homeTrash + "/info"), "už leží v Koši.");
    EXPECT_EQ(refusal(path("missing")), PosixError{ENOENT}.reason());
    EXPECT_EQ(refusal(path("home/..")), PosixError{EINVAL}.reason());
    const Homes deepHome(path("home/deep"), path("data"));
    EXPECT_EQ(refusal(path("home")), "obsahuje domovskou složku.");
    fs::remove(path("home/deep"));
    EXPECT_EQ(diskTree(path("")), before);
}

TEST_F(TrashTest, needsTheRightToChangeTheFolder) {
    write(path("file"), "data");
    const auto expected = PosixError{EACCES}.reason();
    EXPECT_TRUE(asOrdinaryUser([&] { return refusal(path("file")) == expected; }));
    EXPECT_TRUE(fs::exists(path("file")));
}

TEST_F(TrashTest, refusesWhatItsUserCouldNotRemoveFromThere) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can give folders to others";
    write(path("work/mine/foreign/file"), "data");
    fs::create_directories(path("work/harmless/foreign and empty"));
    fs::create_directories(path("data"));
    constexpr uid_t nobody = 65534;
    for (const auto* name : {"work", "work/mine", "work/harmless", "data"})
        ASSERT_EQ(chown(path(name).c_str(), nobody, nobody), 0);
    EXPECT_TRUE(asOrdinaryUser([&] {
        return refusal(path("work/mine")) ==
               "obsahuje cizí soubory, které by z Koše nešlo odstranit.";
    }));
    EXPECT_TRUE(asOrdinaryUser([&] { return trash(path("work/harmless")).has_value(); }));
    EXPECT_TRUE(fs::exists(path("work/mine/foreign/file")));
}

TEST_F(TrashTest, undoTakesTheItemBackAndItsRecordAway) {
    write(path("a.txt"), "data");
    UndoJournal journal;
    const SystemTrash systemTrash;
    EXPECT_THAT(FileActions::trash({FileUrl(path("a.txt"))}, systemTrash, journal).failures,
                IsEmpty());
    EXPECT_FALSE(fs::exists(path("a.txt")));
    EXPECT_TRUE(journal.undoLast(systemTrash));
    EXPECT_EQ(contentOf(path("a.txt")), "data");
    EXPECT_THAT(namesIn(homeTrash + "/info"), IsEmpty());
}

TEST_F(TrashTest, forgetsOnlyWhatIsGoneFromATrash) {
    write(path("a.txt"), "data");
    const auto place = *trash(path("a.txt"));
    write(homeTrash + "/info/other.trashinfo", "somebody's");
    write(path("no trash/info/a.txt.trashinfo"), "somebody's");
    fs::create_directories(path("no trash/files"));
    const auto before = diskTree(path(""));
    TrashCan::forget(place); // it is there
    TrashCan::forget(FileUrl(path("no trash/files/a.txt")));
    TrashCan::forget(FileUrl(homeTrash + "/a.txt"));
    EXPECT_EQ(diskTree(path("")), before);
    fs::rename(place.path(), path("a.txt"));
    TrashCan::forget(place);
    EXPECT_THAT(namesIn(homeTrash + "/info"), ElementsAre("other.trashinfo"));
}

TEST_F(TrashTest, sharesTheTrashWithOtherPrograms) {
    const auto run = [](const std::string& command) {
        return std::system(command.c_str()); // NOLINT(concurrency-mt-unsafe)
    };
    if (run("command -v trash-put >/dev/null") != 0)
        GTEST_SKIP() << "trash-cli is missing";
    const std::string name = "naše složka 100%";
    write(path("work/" + name + "/file"), "ours");
    write(path("work/theirs"), "theirs");
    ASSERT_EQ(run("trash-put '" + path("work/theirs") + "'"), 0);
    const auto foreign = diskTree(homeTrash);
    ASSERT_TRUE(trash(path("work/" + name)));
    write(path("work/theirs"), "ours of the same name");
    ASSERT_TRUE(trash(path("work/theirs")));
    auto after = diskTree(homeTrash);
    for (const auto& [entry, content] : foreign)
        EXPECT_EQ(after[entry], content) << entry;

    ASSERT_EQ(run("trash-list >'" + path("list") + "'"), 0);
    EXPECT_THAT(contentOf(path("list")), HasSubstr(path("work/" + name) + "\n"));
    ASSERT_EQ(run("cd '" + path("work") + "' && echo 0 | trash-restore '" + path("work/" + name) +
                  "' >/dev/null"),
              0);
    EXPECT_EQ(contentOf(path("work/" + name + "/file")), "ours");
}

/// With a second volume, where a trash of its own belongs.
class VolumeTrashTest : public TrashTest {
protected:
    void SetUp() override {
        if (!made)
            GTEST_SKIP() << made.error();
    }
    std::string onVolume(std::string_view name) const { return made->path(name); }
    Trashed trashFromVolume() const {
        write(onVolume("folder/ž.txt"), "data");
        return trash(onVolume("folder/ž.txt"));
    }

    TestVolume::Made made = TestVolume::memory("1m");
};

TEST_F(VolumeTrashTest, usesTheTrashOfTheItemsVolume) {
    const auto place = trashFromVolume();
    ASSERT_TRUE(place);
    EXPECT_EQ(place->path(), onVolume(ownTrash + "/files/ž.txt"));
    EXPECT_THAT(recordOf(*place), HasSubstr("\nPath=folder/%C5%BE.txt\n"));
    for (const auto* folder : {"", "/files", "/info"})
        EXPECT_EQ(fs::status(onVolume(ownTrash) + folder).permissions(), fs::perms::owner_all);
    EXPECT_THAT(namesIn(homeTrash + "/info"), IsEmpty());

    TrashCan::forget(*place);
    EXPECT_TRUE(isRecorded(onVolume(ownTrash)));
    fs::rename(place->path(), onVolume("folder/back"));
    TrashCan::forget(*place);
    EXPECT_THAT(namesIn(onVolume(ownTrash + "/info")), IsEmpty());

    EXPECT_EQ(refusal(onVolume("")), "je to připojený disk.");
    EXPECT_EQ(refusal(fs::path(onVolume("")).parent_path().parent_path()),
              "obsahuje připojený disk.");
    EXPECT_EQ(refusal(onVolume(ownTrash)), "je to samotný Koš.");
    EXPECT_EQ(refusal(onVolume(ownTrash + "/files")), "už leží v Koši.");
}

TEST_F(VolumeTrashTest, usesTheSharedTrashWhereItIsSafe) {
    fs::create_directory(onVolume(".Trash"));
    chmod(onVolume(".Trash").c_str(), 01777);
    EXPECT_EQ(trashFromVolume()->path(),
              onVolume(".Trash/" + std::to_string(geteuid()) + "/files/ž.txt"));
}

TEST_F(VolumeTrashTest, leavesASharedTrashAloneThatIsNotSafe) {
    const auto shared = ".Trash/" + std::to_string(geteuid());
    fs::create_directories(onVolume(shared)); // not sticky
    EXPECT_EQ(trashFromVolume()->path(), onVolume(ownTrash + "/files/ž.txt"));
    EXPECT_THAT(namesIn(onVolume(shared)), IsEmpty());

    fs::remove_all(onVolume(".Trash"));
    fs::create_directories(path("elsewhere"));
    chmod(path("elsewhere").c_str(), 01777);
    fs::create_directory_symlink(path("elsewhere"), onVolume(".Trash"));
    EXPECT_EQ(trashFromVolume()->lastComponent(), "ž 2.txt");
    EXPECT_THAT(namesIn(path("elsewhere")), IsEmpty());
}

TEST_F(VolumeTrashTest, copiesHomeWhereTheVolumeHasNoTrashThatIsSafe) {
    fs::create_directories(path("elsewhere"));
    fs::create_directory_symlink(path("elsewhere"), onVolume(ownTrash));
    write(onVolume("folder/file"), "data");
    const auto before = diskTree(onVolume(""));
    EXPECT_EQ(refusal(onVolume("folder")), "kopie se nepovedla");
    EXPECT_EQ(diskTree(onVolume("")), before);
    EXPECT_THAT(namesIn(homeTrash + "/info"), IsEmpty());

    const auto place = TrashCan::trash(FileUrl(onVolume("folder")), copyAndDelete);
    ASSERT_TRUE(place);
    EXPECT_EQ(place->path(), homeTrash + "/files/folder");
    EXPECT_EQ(contentOf(place->path() + "/file"), "data");
    EXPECT_EQ(recordedPath(recordOf(*place)), onVolume("folder"));
    EXPECT_THAT(namesIn(path("elsewhere")), IsEmpty());

    for (const auto mode : {0777, 0700}) {
        fs::remove(onVolume(ownTrash));
        fs::create_directory(onVolume(ownTrash));
        chmod(onVolume(ownTrash).c_str(), static_cast<mode_t>(mode));
        if (mode == 0700 && chown(onVolume(ownTrash).c_str(), 65534, 65534) != 0)
            FAIL();
        write(onVolume("file"), "data");
        EXPECT_EQ(refusal(onVolume("file")), "kopie se nepovedla");
        EXPECT_THAT(namesIn(onVolume(ownTrash)), IsEmpty());
    }
}

TEST_F(VolumeTrashTest, aCopyTakesNoNameOfAnother) {
    write(onVolume(ownTrash), "a file in the way");
    write(onVolume("file"), "data");
    write(homeTrash + "/files/file", "left by somebody without a record");
    const auto place = TrashCan::trash(FileUrl(onVolume("file")), copyAndDelete);
    EXPECT_EQ(place->path(), homeTrash + "/files/file 2");
    EXPECT_EQ(contentOf(homeTrash + "/files/file"), "left by somebody without a record");
    EXPECT_THAT(namesIn(homeTrash + "/info"), ElementsAre("file 2.trashinfo"));

    const Homes none(path("home"), homeTrash + "/files/file");
    write(onVolume("file"), "data");
    const auto untouched = TrashCan::trash(FileUrl(onVolume("file")), copyAndDelete);
    EXPECT_EQ(untouched.error(), PosixError{ENOTDIR}.reason());
    EXPECT_EQ(contentOf(onVolume("file")), "data");
}

TEST_F(VolumeTrashTest, oneDiskMountedTwiceIsTwoVolumes) {
    const auto bound = TestVolume::boundTo(path("home"));
    ASSERT_TRUE(bound) << bound.error();
    write(path("home/file"), "data");
    EXPECT_EQ(trash(bound->path("file"))->path(), bound->path(ownTrash + "/files/file"));
}

TEST_F(VolumeTrashTest, aFullTrashLeavesTheItemWhole) {
    const Homes full(path("home"), onVolume("data"));
    fs::create_directories(onVolume("data/Trash/files"));
    fs::create_directories(onVolume("data/Trash/info"));
    std::ofstream filler(onVolume("filler"));
    for (int i = 0; i < 4096; ++i)
        filler << std::string(1024, 'x');
    filler.close();
    write(path("home/file"), "data");
    const auto bound = TestVolume::boundTo(path("home"));
    ASSERT_TRUE(bound) << bound.error();

    write(onVolume("data/small"), "");
    EXPECT_EQ(refusal(onVolume("data/small")), PosixError{ENOSPC}.reason());
    EXPECT_TRUE(fs::exists(onVolume("data/small")));
    EXPECT_THAT(namesIn(onVolume("data/Trash/info")), IsEmpty());
    // Another volume has its own.
    EXPECT_EQ(trash(bound->path("file"))->path(), bound->path(ownTrash + "/files/file"));
}

TEST_F(VolumeTrashTest, aCopyThatDoesNotFitLeavesTheItemWholeAndNothingInTheTrash) {
    const Homes small(path("home"), onVolume("data"));
    const auto other = TestVolume::memory("4m");
    ASSERT_TRUE(other) << other.error();
    write(other->path(ownTrash), "a file in the way");
    write(other->path("folder/first"), "data");
    write(other->path("folder/second"), std::string(2UL << 20U, 'x'));
    const auto before = diskTree(other->path());
    const auto trashed = SystemTrash().trash(FileUrl(other->path("folder")));
    ASSERT_FALSE(trashed);
    EXPECT_THAT(trashed.error(), HasSubstr(PosixError{ENOSPC}.reason()));
    EXPECT_EQ(diskTree(other->path()), before);
    EXPECT_THAT(namesIn(onVolume("data/Trash/files")), IsEmpty());
    EXPECT_THAT(namesIn(onVolume("data/Trash/info")), IsEmpty());
}

TEST_F(VolumeTrashTest, aFolderOnAnotherVolumeServesAsTrashAndUndoBringsBackWhatWentThere) {
    const FolderTrash folderTrash(FileUrl(path("trash/inner")));
    write(path("trash/inner/folder"), "somebody's");
    write(onVolume("folder/file"), "data");
    UndoJournal journal;
    FileActions::trash({FileUrl(onVolume("folder"))}, folderTrash, journal);
    EXPECT_EQ(contentOf(path("trash/inner/folder 2/file")), "data");
    EXPECT_FALSE(fs::exists(onVolume("folder")));
    EXPECT_TRUE(journal.undoLast(folderTrash));
    EXPECT_EQ(contentOf(onVolume("folder/file")), "data");
    EXPECT_THAT(namesIn(path("trash/inner")), ElementsAre("folder"));

    EXPECT_FALSE(folderTrash.trash(FileUrl(path("trash")))); // not into itself
    EXPECT_THAT(namesIn(path("trash/inner")), ElementsAre("folder"));
}

TEST_F(VolumeTrashTest, whatCannotBeRenamedStaysWithoutARecord) {
    const auto disk = TestVolume::ext4();
    if (!disk)
        GTEST_SKIP() << disk.error();
    write(disk->path("file"), "data");
    const auto setImmutable = [&](const std::string& sign) {
        const auto command = "chattr " + sign + "i '" + disk->path("file") + "'";
        return std::system(command.c_str()); // NOLINT(concurrency-mt-unsafe)
    };
    ASSERT_EQ(setImmutable("+"), 0);
    EXPECT_EQ(refusal(disk->path("file")), PosixError{EPERM}.reason());
    EXPECT_EQ(contentOf(disk->path("file")), "data");
    EXPECT_THAT(namesIn(homeTrash + "/info"), IsEmpty());
    EXPECT_THAT(namesIn(disk->path(ownTrash + "/info")), IsEmpty());
    setImmutable("-");
}

TEST_F(VolumeTrashTest, leavesAReadOnlyVolumeAsItIs) {
    write(onVolume("file"), "data");
    ASSERT_TRUE(made->makeReadOnly());
    EXPECT_EQ(refusal(onVolume("file")), PosixError{EROFS}.reason());
    EXPECT_EQ(contentOf(onVolume("file")), "data");
    EXPECT_FALSE(fs::exists(homeTrash));
}

/// Whatever goes wrong, an item is in one place, whole, and in a trash only with its record.
class TrashFaultTest : public VolumeTrashTest {
protected:
    void SetUp() override {
        if (!home)
            GTEST_SKIP() << home.error();
        homeTrash = home->path("data/Trash");
        homesInMemory.emplace(home->path("home"), home->path("data"));
    }
    Trial trial(std::function<void()> act) const {
        return {.prepare =
                    [this] {
                        fs::remove_all(home->path("data"));
                        fs::remove_all(onVolume("folder"));
                        fs::remove_all(onVolume(ownTrash));
                        write(onVolume("folder/file"), "data");
                    },
                .act = std::move(act),
                .check = [this] { check(); }};
    }
    void check() const {
        EXPECT_TRUE(isRecorded(homeTrash));
        EXPECT_TRUE(isRecorded(onVolume(ownTrash)));
        int whole = 0;
        for (const auto& root : {onVolume(""), home->path("")})
            for (const auto& [name, content] : diskTree(root))
                whole += content == "data" ? 1 : 0;
        EXPECT_EQ(whole, 1);
    }
    std::function<void()> trashing() const {
        return [this] {
            const auto trashed = trash(onVolume("folder"));
            EXPECT_EQ(fs::exists(onVolume("folder")), !trashed);
        };
    }
    std::function<void()> trashingAndUndoing() const {
        return [this] {
            UndoJournal journal;
            const SystemTrash systemTrash;
            FileActions::trash({FileUrl(onVolume("folder"))}, systemTrash, journal);
            static_cast<void>(journal.undoLast(systemTrash));
        };
    }

    TestVolume::Made home = TestVolume::memory("1m");
    std::optional<Homes> homesInMemory = {};
};

TEST_F(TrashFaultTest, survivesEveryCallThatFails) {
    for (const int error : {EIO, EXDEV, EEXIST, ENOSPC}) {
        EXPECT_GE(forEachCall({.errorCode = error}, trial(trashing())), 20) << error;
        EXPECT_GE(forEachCall({.errorCode = error}, trial(trashingAndUndoing())), 30) << error;
    }
}

TEST_F(TrashFaultTest, survivesTheEndOfTheProcessAtEveryCall) {
    EXPECT_GE(forEachCall({.endsProcess = true}, trial(trashing())), 20);
    EXPECT_GE(forEachCall({.endsProcess = true}, trial(trashingAndUndoing())), 30);
}

} // namespace fennik::test
