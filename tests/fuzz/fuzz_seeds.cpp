// Writes archives of all formats, as the first inputs of the fuzzers: fuzz_seeds FOLDER
#include "tests/support/TestArchives.h"

#include <fstream>
#include <string>
#include <utility>
#include <vector>

int main(int argumentCount, char** arguments) {
    using namespace fennik::test;
    if (argumentCount != 2)
        return 2;
    const std::vector<LibraryEntry> entries = {
        {.path = "složka", .kind = LibraryEntry::Kind::directory, .mode = 0755},
        {.path = "složka/soubor.txt", .content = "obsah obsah obsah obsah"},
        {.path = "prázdný"},
        {.path = "odkaz", .content = "složka/soubor.txt", .kind = LibraryEntry::Kind::symlink},
    };
    const std::vector<std::pair<std::string, std::string>> seeds = {
        {"zip", archiveOf({.format = "zip"}, entries)},
        {"7z", archiveOf({.format = "7zip"}, entries)},
        {"cpio", archiveOf({.format = "newc"}, entries)},
        {"tar.gz", archiveOf({.filters = {"gzip"}}, entries)},
        {"gz", compressed("gzip", "obsah")},
        {"xz", compressed("xz", "obsah")},
        {"aes.zip",
         archiveOf({.format = "zip", .options = "zip:encryption=aes256", .password = "heslo"},
                   {{.path = "a", .content = "tajné"}})},
        {"cp852.zip", zipOf({{.name = "k\x85\xE5/", .isUtf8 = false, .madeBy = 0},
                             {.name = "k\x85\xE5/x", .content = "1", .isUtf8 = false}})},
        {"hostile.tar", tarOf({{.name = "../x", .content = "1"},
                               {.name = "a", .type = '2', .linkName = "/etc"},
                               {.name = "a/b", .content = "1"},
                               {.name = "h", .type = '1', .linkName = "a/b"},
                               {.name = "f", .type = '6'},
                               {.name = "p", .pax = {{"path", std::string(300, 'p')}}}})},
        {"nameless.7z", sevenZipWithoutNames()},
    };
    for (const auto& [name, bytes] : seeds)
        std::ofstream(std::string(arguments[1]) + "/seed." + name, std::ios::binary) << bytes;
    return 0;
}
