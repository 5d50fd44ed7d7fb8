#include "app/model/DirectoryWatcher.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace fennik::app {

namespace {

std::string resolved(const std::string& path) {
    std::error_code error;
    auto result = std::filesystem::canonical(path, error);
    return error ? path : result.string();
}

} // namespace

DirectoryWatcher::DirectoryWatcher(std::string path, std::function<void()> onChange)
    : path_(std::move(path)), onChange_(std::move(onChange)) {}

std::shared_ptr<DirectoryWatcher> DirectoryWatcher::start(FolderEvents& events, Executor& main,
                                                          const FileUrl& folder,
                                                          std::function<void()> onChange) {
    const std::shared_ptr<DirectoryWatcher> watcher(
        new DirectoryWatcher(resolved(folder.path()), std::move(onChange)));
    // Only the main thread ever takes the watcher out of `life`, so that dropping it there is
    // final.
    const std::weak_ptr<DirectoryWatcher> life = watcher;
    watcher->stream_ = events.watch(watcher->path_, [&main, life] {
        main.execute([life] {
            if (const auto alive = life.lock())
                alive->onChange_();
        });
    });
    return watcher->stream_ ? watcher : nullptr;
}

} // namespace fennik::app
