#include "app/system/InstalledEditors.h"
#include "tests/support/ManualExecutor.h"
#include "tests/support/TempFolder.h"

#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>

namespace fennik::test {

namespace {

using testing::ElementsAre;
using testing::Pair;

} // namespace

TEST(InstalledEditorsTest, areTheApplicationsThatOpenTextAndCanBeStarted) {
    TempFolder temp;
    temp.folder("data");
    temp.folder("data/applications");
    temp.folder("data/applications/kde");
    const auto write = [&](const std::string& name, const std::string& lines) {
        std::ofstream(temp.path("data/applications/" + name))
            << "[Desktop Entry]\nType=Application\n"
            << lines;
    };
    write("kde/zapis.desktop",
          "Name=Writer\nName[cs]=Zápisník\nExec=sh %f\nMimeType=text/plain;\n");
    write("cary.desktop", "Name=Čáry\nExec=sh\nMimeType=image/png;text/plain\n");
    write("nic.desktop", "Name=Chybí\nExec=/nikde/program %f\nMimeType=text/plain;\n");
    write("obraz.desktop", "Name=Obrázky\nExec=sh %f\nMimeType=image/png;\n");
    setenv("XDG_DATA_HOME", temp.path("data").c_str(), 1);  // NOLINT(concurrency-mt-unsafe)
    setenv("XDG_DATA_DIRS", temp.path("nikde").c_str(), 1); // NOLINT(concurrency-mt-unsafe)

    ManualExecutor disk;
    ManualExecutor main;
    std::vector<std::pair<std::string, std::string>> found;
    system::InstalledEditors editors(disk, main);
    editors.find([&](const std::vector<app::TextEditor>& all) {
        for (const auto& editor : all)
            found.emplace_back(editor.name, editor.value);
    });
    disk.runAll();
    EXPECT_TRUE(found.empty());
    main.runAll();
    EXPECT_THAT(found,
                ElementsAre(Pair("Čáry", "cary.desktop"), Pair("Zápisník", "kde-zapis.desktop")));
}

} // namespace fennik::test
