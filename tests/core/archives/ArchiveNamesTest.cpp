#include "core/archives/ArchiveError.h"
#include "core/archives/ArchiveFormat.h"
#include "core/archives/ArchiveSupport.h"
#include "core/archives/EntryPath.h"
#include "core/base/PosixError.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <map>

namespace fennik::test {

namespace {

std::string repeated(std::string_view text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

} // namespace

TEST(ArchiveNamesTest, knowsArchivesByTheirExtensions) {
    using ArchiveSupport::archiveExtension;
    EXPECT_EQ(archiveExtension("Photos.TAR.GZ"), "tar.gz");
    EXPECT_EQ(archiveExtension("a.tgz"), "tgz");
    EXPECT_EQ(archiveExtension("backup.tar"), "tar");
    EXPECT_EQ(archiveExtension("archive.tar.z"), "tar.z");
    EXPECT_EQ(archiveExtension("file.Z"), "z");
    EXPECT_EQ(archiveExtension(".tar.gz"), "gz");
    for (const auto* name : {"x.docx", ".zip", "zip", "", "a.zip "})
        EXPECT_EQ(archiveExtension(name), std::nullopt) << name;
    EXPECT_TRUE(ArchiveSupport::isSingleStreamCompressed("gz"));
    EXPECT_FALSE(ArchiveSupport::isSingleStreamCompressed("tar.gz"));
    for (const auto format : allArchiveFormats)
        EXPECT_EQ(archiveExtension("a." + std::string(extensionOf(format))), extensionOf(format));
}

TEST(ArchiveNamesTest, saysWhatTheLibraryMeans) {
    const auto said = [](std::string_view message, int code) {
        return ArchiveError::of(message, code).message();
    };
    EXPECT_EQ(said("Incorrect PASSPHRASE", 0), "Špatné heslo.");
    EXPECT_EQ(said("Passphrase required for this entry", -1), "Archiv je chráněný heslem.");
    EXPECT_EQ(said("Encrypted file is unsupported", 0),
              "Šifrovaný archiv  Fennik neumí rozbalit (umí jen šifrovaný ZIP).");
    EXPECT_EQ(said("Unrecognized archive format", 84), "Archiv nejde otevřít: neznámý formát");
    EXPECT_EQ(said("anything", EACCES), "Archiv nejde otevřít: " + PosixError{EACCES}.reason());
    EXPECT_EQ(said("Bad CRC", EIO), "Archiv je poškozený nebo nečitelný: Bad CRC");
    EXPECT_EQ(said("", -1), "Archiv je poškozený nebo nečitelný: neznámá chyba");
    EXPECT_EQ(ArchiveError{ArchiveError::Case::cancelled}.message(), "");
}

TEST(ArchiveNamesTest, keepsPathsInsideTheArchive) {
    for (const auto& [written, path] : std::map<std::string, std::string>{
             {"a/b", "a/b"},
             {"/etc/passwd", "etc/passwd"},
             {"./a/./b/.", "a/b"},
             {"a//b///", "a/b"},
             {"./", ""},
             {"...", "..."},
             {"..a/b..", "..a/b.."},
             {"C:\\x", "C:\\x"},
         })
        EXPECT_EQ(entryPath(written), path) << written;
    for (const auto* written : {"..", "../a", "a/..", "a/../b", "/..", "./../a"})
        EXPECT_EQ(entryPath(written), std::nullopt) << written;
}

TEST(ArchiveNamesTest, limitsLengthAndDepthOfPaths) {
    EXPECT_TRUE(entryPath(std::string(4096, 'x')));
    EXPECT_FALSE(entryPath(std::string(4097, 'x')));
    EXPECT_FALSE(entryPath(std::string(4095, 'x') + "/y"));
    EXPECT_TRUE(entryPath(std::string(5000, '/') + "x"));
    EXPECT_TRUE(entryPath(repeated("d/", 256) + "x"));
    EXPECT_FALSE(entryPath(repeated("d/", 257) + "x"));
    EXPECT_FALSE(entryPath(repeated("d/", 30'000)));
}

} // namespace fennik::test
