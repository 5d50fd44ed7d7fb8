#include "core/archives/FileCompleter.h"

#include "core/platform/OwnProcess.h"

#include <algorithm>
#include <iterator>
#include <system_error>
#include <utility>

namespace fennik {

namespace {

/// So many files may wait, which are open.
constexpr std::size_t mostWaiting = 8;
/// So many may have come since the first one that has not ended, for one that hangs.
constexpr std::size_t mostUntold = 8 * mostWaiting;

} // namespace

FileCompleter::FileCompleter() : mostWaiting_(OwnProcess::shareOfOpenFiles(10, 1, mostWaiting)) {}

FileCompleter::~FileCompleter() {
    {
        std::unique_lock lock(mutex_);
        while (completeNext(lock)) {
        }
        isOver_ = true;
    }
    hasWork_.notify_one();
    if (thread_.joinable())
        thread_.join();
}

FileCompleter::End FileCompleter::complete(Work work) {
    auto& file = work.file;
    auto done = file.write(0, work.content);
    if (done)
        done = file.finish(work.size, work.mode, work.modified);
    if (done)
        return {};
    const auto removed = file.discard();
    return {.failure = done.error(),
            .leftover = removed ? std::nullopt : std::optional(removed.error())};
}

NewFile::Result<NewFile> FileCompleter::make(const OpenFolder& folder, const std::string& name) {
    auto file = NewFile::make(folder, name);
    if (file || !file.error().isForLackOfDescriptors())
        return file;
    finish();
    return NewFile::make(folder, name);
}

void FileCompleter::completeLater(Work work, OnEnd onEnd) {
    collect();
    if (!items_.empty())
        begin();
    {
        std::unique_lock lock(mutex_);
        const bool isFull = items_.size() >= mostWaiting_;
        if (items_.size() >= mostUntold || (isFull && !completeNext(lock)))
            hasEnd_.wait(lock, [this] { return items_.front().end.has_value(); });
        items_.push_back({.work = std::move(work), .onEnd = std::move(onEnd)});
        if (next_ == items_.end())
            next_ = std::prev(items_.end());
    }
    hasWork_.notify_one();
}

void FileCompleter::collect() {
    std::unique_lock lock(mutex_);
    while (!items_.empty() && items_.front().end) {
        const auto item = std::move(items_.front());
        items_.pop_front();
        lock.unlock();
        item.onEnd(item.end.value_or(End{}));
        lock.lock();
    }
}

void FileCompleter::finish() {
    {
        std::unique_lock lock(mutex_);
        while (completeNext(lock)) {
        }
        hasEnd_.wait(lock, [this] {
            return std::ranges::all_of(items_,
                                       [](const Item& item) { return item.end.has_value(); });
        });
    }
    collect();
}

void FileCompleter::begin() {
    if (thread_.joinable())
        return;
    try {
        thread_ = std::thread([this] { run(); });
    } catch (const std::system_error&) {
        // No further thread is to be had, so this one does the work.
        return;
    }
}

void FileCompleter::run() {
    std::unique_lock lock(mutex_);
    while (!isOver_) {
        if (!completeNext(lock))
            hasWork_.wait(lock, [this] { return isOver_ || next_ != items_.end(); });
    }
}

bool FileCompleter::completeNext(std::unique_lock<std::mutex>& lock) {
    if (next_ == items_.end())
        return false;
    auto& item = *next_++;
    lock.unlock();
    const auto end = complete(std::move(item.work));
    lock.lock();
    item.end = end;
    hasEnd_.notify_one();
    return true;
}

} // namespace fennik
