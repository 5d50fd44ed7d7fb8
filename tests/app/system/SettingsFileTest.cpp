#include "app/system/SettingsFile.h"
#include "tests/support/ManualExecutor.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <sstream>
#include <sys/stat.h>
#include <vector>

namespace fennik::test {

namespace {

using namespace app;
using system::SettingsFile;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Texts = std::vector<std::string>;

struct SettingsFileTest : testing::Test {
    TempFolder config;
    ManualExecutor worker;
    ManualExecutor main;
    std::vector<std::string> reported;

    std::unique_ptr<SettingsFile> open(const std::string& folder = {}) {
        return std::make_unique<SettingsFile>(
            folder.empty() ? config.url().path() : folder, worker, main,
            [this](const std::string& sentence) { reported.push_back(sentence); });
    }
    void settle() {
        worker.runAll();
        main.runAll();
    }
    std::string content(const std::string& name = "Fennik.conf") const {
        std::ifstream stream(config.path("Fennik/" + name), std::ios::binary);
        return (std::ostringstream() << stream.rdbuf()).str();
    }
    void write(const std::string& text) const {
        config.folder("Fennik");
        config.file("Fennik/Fennik.conf", text);
    }
    bool exists(const std::string& name) const {
        return std::filesystem::exists(config.path("Fennik/" + name));
    }
};

template <class T>
std::optional<T> read(const SettingsFile& settings, const char* key) {
    const auto value = settings.value(key, SettingValue(T()));
    return value ? std::optional(std::get<T>(*value)) : std::nullopt;
}

template <class T>
void expectBack(const SettingsFile& settings, const char* key, const T& value) {
    EXPECT_EQ(read<T>(settings, key), value) << key;
}

} // namespace

TEST_F(SettingsFileTest, everyValueComesBackAtTheNextStart) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    const Texts texts{"a, \"b\";č\n\\", "@ByteArray(x)", "", "@"};
    const auto first = open();
    first->setValue("panels.v1", SettingData{bytes});
    first->setValue("tips.welcomeShown", true);
    first->setValue("confirmThreshold", std::int64_t(-10));
    first->setValue("throttleMBps", 0.1);
    first->setValue("editorApp", std::string("@žluť, \"kůň\"=;"));
    first->setValue("favorites", texts);
    first->setValue("recents", Texts{"/only, one"});
    settle();
    EXPECT_THAT(reported, IsEmpty());
    const auto second = open();
    for (const auto* settings : {first.get(), second.get()}) {
        expectBack(*settings, "panels.v1", SettingData{bytes});
        expectBack(*settings, "tips.welcomeShown", true);
        expectBack(*settings, "confirmThreshold", std::int64_t(-10));
        expectBack(*settings, "throttleMBps", 0.1);
        expectBack(*settings, "editorApp", std::string("@žluť, \"kůň\"=;"));
        expectBack(*settings, "favorites", texts);
        expectBack(*settings, "recents", Texts{"/only, one"});
    }
    first->setValue("favorites", Texts());
    settle();
    EXPECT_THAT(read<Texts>(*open(), "favorites").value_or(Texts()), IsEmpty());
    EXPECT_FALSE(exists("Fennik.conf.damaged"));
}

TEST_F(SettingsFileTest, whatWaitsIsWrittenInOneGoAndOnlyThat) {
    write("[General]\nfutureKey=@Variant(\\0\\0\\0\\x2\\0\\0\\0\\x7)\ndensity=compact\n\n"
          "[Future]\nnumber=1\n");
    const auto settings = open();
    write("[General]\ndensity=comfortable\nfutureKey=kept\n\n[Future]\nnumber=2\n");
    settings->setValue("showHidden", true);
    settings->setValue("showHidden", false);
    settings->setValue("appearance", std::string("dark"));
    EXPECT_EQ(read<bool>(*settings, "showHidden"), false);
    worker.runLast();
    EXPECT_TRUE(worker.isIdle());
    EXPECT_EQ(content(), "[General]\nappearance=dark\ndensity=comfortable\nfutureKey=kept\n"
                         "showHidden=false\n\n[Future]\nnumber=2\n");
}

TEST_F(SettingsFileTest, aValueOfTheWrongTypeIsMissingAndACopyIsKeptBeforeItIsReplaced) {
    const std::string text = "[General]\nconfirmTrash=maybe\nconfirmThreshold=10x\ndensity=a, b\n"
                             "throttleMBps=nan\npanels.v1=text\nfavorites=@ByteArray(a)\n";
    write(text);
    const auto settings = open();
    EXPECT_EQ(read<bool>(*settings, "confirmTrash"), std::nullopt);
    EXPECT_EQ(read<std::int64_t>(*settings, "confirmThreshold"), std::nullopt);
    EXPECT_EQ(read<double>(*settings, "throttleMBps"), std::nullopt);
    EXPECT_EQ(read<std::string>(*settings, "density"), std::nullopt);
    EXPECT_EQ(read<SettingData>(*settings, "panels.v1"), std::nullopt);
    EXPECT_EQ(read<Texts>(*settings, "favorites"), std::nullopt);
    settings->setValue("appearance", std::string("dark"));
    settle();
    EXPECT_FALSE(exists("Fennik.conf.damaged"));

    settings->setValue("confirmTrash", true);
    settle();
    EXPECT_THAT(content("Fennik.conf.damaged"), HasSubstr("confirmTrash=maybe"));
    settings->setValue("confirmTrash", false);
    settle();
    EXPECT_FALSE(exists("Fennik.conf.damaged-2"));
    EXPECT_THAT(content(), HasSubstr("confirmTrash=false\n"));
}

TEST_F(SettingsFileTest, aDamagedFileGivesWhatCanBeReadAndIsKept) {
    using namespace std::string_literals;
    const std::string good = "[General]\nappearance=dark\n";
    std::string expectedName = "Fennik.conf.damaged";
    int number = 1;
    for (const auto& damage :
         {"panels.v1=\"@ByteArray({\\\"left"s, "no value\n"s, "a=\0\0\0\n"s, "a=\xFF\n"s}) {
        write(good + damage);
        const auto settings = open();
        EXPECT_EQ(read<std::string>(*settings, "appearance"), "dark");
        settings->setValue("density", std::string("compact"));
        settle();
        EXPECT_EQ(content(expectedName), good + damage);
        EXPECT_EQ(read<std::string>(*open(), "density"), "compact");
        expectedName = "Fennik.conf.damaged-" + std::to_string(++number);
        settings->setValue("density", std::string("regular"));
        settle();
        EXPECT_FALSE(exists(expectedName));
    }
    EXPECT_THAT(reported, IsEmpty());
}

TEST_F(SettingsFileTest, whereNothingCanBeStoredValuesLiveInMemoryAndTheUserIsToldOnce) {
    const auto nowhere = config.path("home/.config");
    const auto settings = open(nowhere);
    settings->setValue("showHidden", true);
    settle();
    settings->setValue("density", std::string("compact"));
    settle();
    EXPECT_EQ(read<bool>(*settings, "showHidden"), true);
    EXPECT_THAT(reported, ElementsAre("Nastavení nejde uložit: složka „" + config.path("home") +
                                      "“ neexistuje."));
    EXPECT_FALSE(std::filesystem::exists(config.path("home")));

    config.folder("home");
    settings->setValue("appearance", std::string("dark"));
    settle();
    EXPECT_EQ(read<bool>(*open(nowhere), "showHidden"), true);
    EXPECT_EQ(read<std::string>(*open(nowhere), "density"), "compact");

    std::filesystem::remove_all(config.path("home"));
    settings->setValue("appearance", std::string("light"));
    settle();
    EXPECT_EQ(reported.size(), 2U);
}

TEST_F(SettingsFileTest, whatIsNoFileIsLeftAlone) {
    config.folder("Fennik");
    ASSERT_EQ(mkfifo(config.path("Fennik/Fennik.conf").c_str(), 0600), 0);
    const auto settings = open();
    settings->setValue("showHidden", true);
    settle();
    EXPECT_THAT(reported, ElementsAre(HasSubstr("není soubor.")));

    config.file("file");
    const auto inFile = open(config.path("file"));
    inFile->setValue("showHidden", true);
    settle();
    EXPECT_EQ(reported.back(),
              "Nastavení nejde uložit: „" + config.path("file") + "“ není složka.");
}

TEST_F(SettingsFileTest, withoutTheRightToWriteTheFileStaysAsItIs) {
    const std::string text = "[General]\nappearance=dark\ndamaged\n";
    write(text);
    EXPECT_TRUE(asOrdinaryUser([this] {
        const auto settings = open();
        settings->setValue("appearance", std::string("light"));
        settle();
        return reported == std::vector{"Nastavení nejde uložit: do „" + config.path("Fennik") +
                                       "“ nemáte právo zapisovat."} &&
               read<std::string>(*settings, "appearance") == "light";
    }));
    EXPECT_EQ(content(), text);
    EXPECT_FALSE(exists("Fennik.conf.damaged"));
}

TEST_F(SettingsFileTest, aFailureIsNotReportedToSomebodyWhoIsGone) {
    auto settings = open(config.path("home/.config"));
    settings->setValue("showHidden", true);
    settings.reset();
    settle();
    EXPECT_THAT(reported, IsEmpty());
}

TEST(SettingsFolderTest, isWhatTheEnvironmentSaysWhenThatIsAbsolute) {
    ASSERT_EQ(setenv("XDG_CONFIG_HOME", "/elsewhere", 1), 0);
    EXPECT_EQ(SettingsFile::configFolder("/home/jana"), "/elsewhere");
    for (const auto* value : {"", "relative"}) {
        ASSERT_EQ(setenv("XDG_CONFIG_HOME", value, 1), 0);
        EXPECT_EQ(SettingsFile::configFolder("/home/jana"), "/home/jana/.config");
    }
    unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(SettingsFile::configFolder("/home/jana"), "/home/jana/.config");
}

} // namespace fennik::test
