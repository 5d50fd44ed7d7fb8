#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace fennik::test {

enum class LetterCase { counts, ignored };

/// A volume of its own for one test, unmounted at the end, however the process ends: only the
/// thread that made the first volume, and threads and processes that it starts afterwards, see it.
/// Making one needs root and tools; the error says what is missing, to skip the test with:
///
///     const auto volume = TestVolume::ext4();
///     if (!volume)
///         GTEST_SKIP() << volume.error();
class TestVolume {
public:
    using Made = std::expected<TestVolume, std::string>;

    /// In memory. `size` as for mount: "1m". `inodes` limits the number of items; 0: no limit.
    static Made memory(const std::string& size, int inodes = 0);
    /// On a disk of 32 MiB, whose root holds the folder "lost+found".
    static Made ext4();
    /// On a disk of 128 MiB that shares the blocks of clones.
    static Made btrfs();
    /// On a disk of 16 MiB behind a process that knows no exclusive rename, no owners and no modes.
    /// Where letter case is ignored, names are listed in small letters.
    static Made withoutExclusiveRename(LetterCase letterCase = LetterCase::counts);
    /// The folder at a second place: with the same device, and a volume of its own to renames.
    static Made boundTo(const std::string& folder);

    /// Where the volume is, and an entry of its root.
    const std::string& path() const;
    std::string path(std::string_view name) const { return path() + "/" + std::string(name); }

    /// The reason where it could not be done.
    std::expected<void, std::string> makeReadOnly() const;

    TestVolume(TestVolume&&) noexcept;
    TestVolume& operator=(TestVolume&&) noexcept;
    ~TestVolume();

private:
    class Mount;
    using Steps = std::function<std::expected<void, std::string>(Mount&)>;

    explicit TestVolume(std::unique_ptr<Mount> mount);
    static Made madeBy(const Steps& steps);

    std::unique_ptr<Mount> mount_;
};

} // namespace fennik::test
