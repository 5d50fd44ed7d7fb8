#pragma once

#include <functional>
#include <memory>
#include <string>

namespace fennik {

/// Tells of changes in folders: an entry that is made, deleted, moved, written or given other
/// attributes directly inside, or the folder itself deleted, moved or unmounted. What happens
/// deeper in the tree does not count. Folders on a network tell only what this computer did.
///
/// The changes of one folder are gathered: after a quiet time the first one is told about 10 ms
/// later, so that one action of another program makes one call, and calls are at least 0.25 s
/// apart. Changes that the system could not count are told as a change of every folder.
class FolderEvents {
public:
    /// One watched folder, as long as this object lives.
    class Watch {
    public:
        /// Never waits for a disk, and callable on any thread, also while `changed` runs. No call
        /// begins afterwards; one that is under way on the other thread is not waited for.
        virtual ~Watch() = default;
        Watch(const Watch&) = delete;
        Watch& operator=(const Watch&) = delete;

    protected:
        Watch() = default;
    };

    /// Never waits for a disk, but for a call of `changed` that is under way. Nothing is told
    /// afterwards, and watches that are left are harmless.
    virtual ~FolderEvents() = default;
    FolderEvents(const FolderEvents&) = delete;
    FolderEvents& operator=(const FolderEvents&) = delete;

    /// Waits for the disk, and so is called on workers, on several at once if need be. `changed` is
    /// called on the thread of the events and must neither wait nor throw. After the folder itself
    /// is gone one last call comes. Nothing when the system refuses: it has too many watches, or
    /// the folder cannot be read or is none.
    [[nodiscard]] virtual std::unique_ptr<Watch> watch(const std::string& path,
                                                       std::function<void()> changed) = 0;

protected:
    FolderEvents() = default;
};

/// The events of this system. Where it has none, or gives no more of them, every watch is refused.
std::unique_ptr<FolderEvents> makeFolderEvents();

} // namespace fennik
