#include "core/archives/ZipEncryption.h"

#include "core/platform/posix/Descriptor.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestArchives.h"

#include <gtest/gtest.h>

#include <fcntl.h>

namespace fennik::test {

class ZipEncryptionTest : public testing::Test {
protected:
    std::string encryptionOf(const std::string& bytes) {
        temp.file("a.zip", bytes);
        const Descriptor file(open(temp.path("a.zip").c_str(), O_RDONLY | O_CLOEXEC));
        return zipEncryption(file.number());
    }
    static std::string zip(const std::string& encryption) {
        const std::string options = "zip:encryption=" + encryption;
        return archiveOf({.format = "zip", .options = options, .password = "heslo"},
                         {{.path = "a folder first", .kind = LibraryEntry::Kind::directory},
                          {.path = "secret", .content = "x"}});
    }

    TempFolder temp;
};

TEST_F(ZipEncryptionTest, isCalledByItsName) {
    EXPECT_EQ(encryptionOf(zip("aes128")), "AES-128");
    EXPECT_EQ(encryptionOf(zip("traditional")), "ZipCrypto");
    EXPECT_EQ(encryptionOf("a program that unpacks itself" + zip("aes256")), "AES-256");
    const std::string strong("\x01\x99\x07\0\x02\0AE\x02\0\0", 11); // 192 bits
    EXPECT_EQ(encryptionOf(zipOf({{.name = "a", .flags = 1, .method = 99, .extra = strong}})),
              "AES-192");
    EXPECT_EQ(encryptionOf(zipOf({{.name = "a"}})), "");
    EXPECT_EQ(encryptionOf(zipOf({{.name = "a", .flags = 0x41}})), "") << "a way of its own";
}

TEST_F(ZipEncryptionTest, isFoundBehindALongDirectoryAndInLargeArchives) {
    std::vector<ZipEntry> entries(3'000, {.name = std::string(50, 'x')});
    entries.push_back({.name = "a", .flags = 1});
    EXPECT_EQ(encryptionOf(zipOf(entries)), "ZipCrypto");

    auto large = zip("aes256");
    const auto end = large.rfind("PK\5\6");
    std::string wide = "PK\6\6" + std::string(72, '\0');
    wide.replace(40, 4, large, end + 12, 4); // the length of the directory, where it has room
    large.replace(end + 12, 4, 4, '\xFF');
    large.insert(end, wide);
    EXPECT_EQ(encryptionOf(large), "AES-256");
}

TEST_F(ZipEncryptionTest, isNotKnownOfWhatIsCutOffOrLies) {
    const auto whole = zip("aes256");
    const auto end = whole.rfind("PK\5\6");
    for (std::size_t length = 0; length < whole.size(); length += 7)
        EXPECT_EQ(encryptionOf(whole.substr(0, length)), "") << length;
    for (const char lie : {'\x7F', '\xFE', '\xFF'}) {
        auto lying = whole;
        lying.replace(end + 12, 4, 4, lie);
        EXPECT_EQ(encryptionOf(lying), "");
    }
    auto longField = whole;
    longField.replace(longField.rfind("\x01\x99") + 2, 2, 2, '\xFF');
    EXPECT_EQ(encryptionOf(longField), "AES");
}

} // namespace fennik::test
