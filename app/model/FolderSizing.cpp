#include "app/model/FolderSizing.h"

#include "core/listing/FolderSizer.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>

namespace fennik::app {

namespace {

/// How often a run tells what it has found.
constexpr auto tellEvery = std::chrono::milliseconds(100);
/// The more the main thread has to do for a telling, the longer the pause behind it.
constexpr int pauseFactor = 3;

} // namespace

/// What a run tells on its way.
struct FolderSizing::Progress {
    /// Names with their sizes; without one, the folder could not be read.
    std::vector<std::pair<std::string, std::optional<std::int64_t>>> done = {};
    std::string current = {}; ///< the folder that is taking long; empty for none
    bool isEnd = false;
};

/// Holds runs back while the main thread is busy with what they have told.
class FolderSizing::Pace {
public:
    /// Whether something may be told now; `heard` is then expected to follow.
    bool mayTell(std::chrono::steady_clock::time_point now) {
        const std::lock_guard lock(lock_);
        return now >= next_ && !std::exchange(isOut_, true);
    }
    void heard(std::chrono::steady_clock::time_point from,
               std::chrono::steady_clock::time_point until) {
        const std::lock_guard lock(lock_);
        isOut_ = false;
        next_ = until + std::max<std::chrono::steady_clock::duration>(tellEvery,
                                                                      pauseFactor * (until - from));
    }

private:
    std::mutex lock_;
    bool isOut_ = false; ///< something was told, and not yet heard
    std::chrono::steady_clock::time_point next_;
};

/// One run, on one worker.
class FolderSizing::Run {
public:
    using Tell = std::move_only_function<void(Progress)>;

    Run(PanelServices services, FolderSizeCache& cache, std::shared_ptr<CancelFlag> flag,
        std::shared_ptr<Pace> pace, Purpose purpose, Tell tell)
        : services_(std::move(services)),
          cache_(cache),
          flag_(std::move(flag)),
          pace_(std::move(pace)),
          purpose_(purpose),
          tell_(std::move(tell)),
          begun_(services_.now()) {}

    void work(const Extent& extent, const std::vector<Job>& jobs) {
        for (const auto& job : jobs) {
            auto bytes = sizeOf(extent, job);
            if (flag_->isSet())
                return;
            progress_.done.emplace_back(job.name, bytes);
            progress_.current.clear();
        }
        progress_.isEnd = true;
        tell_(std::move(progress_));
    }

private:
    std::optional<std::int64_t> sizeOf(const Extent& extent, const Job& job) {
        const auto realUrl = extent.realFolder.appending(job.name);
        if (extent.skipped.contains(realUrl.path()))
            return std::nullopt;
        const auto path = extent.folder.appending(job.name).path();
        if (job.takeKnown) {
            if (const auto known = cache_.lookup(path, services_.today()))
                return known->bytes;
        }
        const auto isCancelled = [this, &job] {
            tellInTime(job.name);
            return flag_->isSet();
        };
        const auto result =
            FolderSizer::size(services_.files, realUrl, isCancelled, extent.skipped);
        if (!result)
            return std::nullopt;
        cache_.store(path, result->bytes, result->files, services_.today());
        return result->bytes;
    }

    void tellInTime(const std::string& name) {
        const auto now = services_.now();
        const bool isNews = purpose_ == Purpose::automatic && announced_ != name;
        if (now - begun_ < tellEvery || (!isNews && progress_.done.empty()) || !pace_->mayTell(now))
            return;
        announced_ = name;
        progress_.current = name;
        tell_(std::exchange(progress_, {}));
    }

    PanelServices services_;
    FolderSizeCache& cache_;
    std::shared_ptr<CancelFlag> flag_;
    std::shared_ptr<Pace> pace_;
    Purpose purpose_;
    Tell tell_;
    std::chrono::steady_clock::time_point begun_;
    std::string announced_;
    Progress progress_;
};

FolderSizing::FolderSizing(PanelServices services, FolderSizeCache& cache,
                           std::function<void()> changed)
    : services_(std::move(services)),
      cache_(cache),
      changed_(std::move(changed)),
      pace_(std::make_shared<Pace>()) {}

void FolderSizing::start(Extent extent, std::vector<Job> jobs, Purpose purpose) {
    std::erase_if(jobs, [this, purpose](const Job& job) { return isUnderWay(job, purpose); });
    if (jobs.empty())
        return;
    auto& names = purpose == Purpose::asked ? sizing_ : automatic_;
    for (const auto& job : jobs)
        names.insert(job.name);
    if (purpose == Purpose::automatic)
        automaticExtent_ = extent;
    ++runs_;
    // The flag also tells when this object is gone.
    auto tell = [this, &main = services_.main, flag = flag_](Progress progress) {
        main.execute([this, flag, progress = std::move(progress)]() mutable {
            if (!flag->isSet())
                take(std::move(progress));
        });
    };
    auto run = std::make_unique<Run>(services_, cache_, flag_, pace_, purpose, std::move(tell));
    // Of its own, so that no run waits for another one in the same folder.
    auto path = extent.realFolder.appending(jobs.front().name).path();
    services_.sizingDisk.execute(std::move(path),
                                 [extent = std::move(extent), jobs = std::move(jobs),
                                  run = std::move(run)] { run->work(extent, jobs); });
    changed_();
}

bool FolderSizing::isUnderWay(const Job& job, Purpose purpose) {
    // What is asked for does not wait for all that the background has before it.
    const bool isComputed = sizing_.contains(job.name) ||
                            (purpose == Purpose::automatic && automatic_.contains(job.name));
    if (isComputed && !job.takeKnown)
        again_.insert(job.name);
    const bool isInVain = purpose == Purpose::automatic && unreadable_.contains(job.name);
    return isComputed || isInVain;
}

NameSet FolderSizing::asked() const {
    auto names = sizing_;
    for (const auto& name : automatic_)
        names.erase(name);
    return names;
}

void FolderSizing::take(Progress progress) {
    const auto from = services_.now();
    for (auto& [name, bytes] : progress.done) {
        sizing_.erase(name);
        automatic_.erase(name);
        if (bytes)
            sizes_.insert_or_assign(std::move(name), *bytes);
        else
            unreadable_.insert(std::move(name));
    }
    if (!progress.current.empty())
        sizing_.insert(std::move(progress.current));
    if (progress.isEnd && --runs_ == 0) {
        sizing_.clear();
        automatic_.clear();
        std::vector<Job> jobs;
        for (const auto& name : std::exchange(again_, {}))
            jobs.push_back({.name = name, .takeKnown = false});
        start(automaticExtent_, std::move(jobs), Purpose::automatic);
    }
    changed_();
    pace_->heard(from, services_.now());
}

bool FolderSizing::stop() {
    if (runs_ == 0)
        return false;
    flag_->set();
    flag_ = std::make_shared<CancelFlag>();
    pace_ = std::make_shared<Pace>();
    runs_ = 0;
    sizing_.clear();
    automatic_.clear();
    again_.clear();
    return true;
}

void FolderSizing::begin(FolderSizes known) {
    stop();
    unreadable_.clear();
    sizes_ = std::move(known);
}

bool FolderSizing::learn(const FolderSizes& known) {
    const auto before = sizes_.size();
    for (const auto& [name, bytes] : known)
        sizes_.try_emplace(name, bytes);
    return sizes_.size() > before;
}

void FolderSizing::forget(const std::vector<std::string>& names) {
    for (const auto& name : names)
        sizes_.erase(name);
}

} // namespace fennik::app
