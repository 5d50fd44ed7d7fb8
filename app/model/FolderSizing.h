#pragma once

#include "app/model/CancelFlag.h"
#include "app/model/PanelServices.h"
#include "core/listing/FileItems.h"
#include "core/listing/FileSorter.h"
#include "core/listing/FolderSizeCache.h"
#include "core/listing/NameSet.h"

#include <functional>
#include <memory>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace fennik::app {

/// The sizes of the folders that one panel lists, and the runs that compute them on workers. Lives
/// on the main thread.
class FolderSizing {
public:
    enum class Purpose {
        asked,     ///< by the user: every folder shows at once that it is being computed
        automatic, ///< in the background: only the folder that takes long shows it
    };
    /// A folder to be computed.
    struct Job {
        std::string name;
        bool takeKnown = true; ///< whether a size that was computed before will do
    };

    /// `cache` outlives this object. `changed` is called when sizes have become known, or runs have
    /// begun or ended.
    FolderSizing(PanelServices services, FolderSizeCache& cache, std::function<void()> changed);
    ~FolderSizing() { flag_->set(); }
    FolderSizing(const FolderSizing&) = delete;
    FolderSizing& operator=(const FolderSizing&) = delete;

    const FolderSizes& sizes() const { return sizes_; }
    /// The names whose sizes are being computed.
    const NameSet& sizing() const { return sizing_; }
    /// Those of them that the user has asked for.
    NameSet asked() const;

    /// Where a run goes.
    struct Extent {
        FileUrl folder;                               ///< the folders to be computed lie in it
        FileUrl realFolder;                           ///< the same without links on the way
        std::unordered_set<std::string> skipped = {}; ///< folders that are not entered
    };

    /// Computes the sizes of folders, beside what runs already and but for what that computes. A
    /// folder that is to be computed anew, but is under way, has its turn after all runs.
    void start(Extent extent, std::vector<Job> jobs, Purpose purpose);
    /// Stops all runs; what they computed so far stays. False when none was running.
    bool stop();
    /// Another folder is listed now, of whose folders `known` is known.
    void begin(FolderSizes known);
    /// Adds what has become known elsewhere. False when there was nothing new in it.
    bool learn(const FolderSizes& known);
    /// These folders are gone.
    void forget(const std::vector<std::string>& names);
    void swapSizes(FolderSizing& other) noexcept { sizes_.swap(other.sizes_); }

private:
    struct Progress;
    class Pace;
    class Run;
    void take(Progress progress);
    /// Whether a run computes it already, or has done so in vain. Notes what will have to be
    /// computed again.
    bool isUnderWay(const Job& job, Purpose purpose);

    PanelServices services_;
    FolderSizeCache& cache_;
    std::function<void()> changed_;
    FolderSizes sizes_;
    NameSet sizing_;
    NameSet automatic_;      ///< what runs in the background have yet to compute
    Extent automaticExtent_; ///< of the newest of them
    NameSet unreadable_;     ///< folders of this visit whose size cannot be computed
    NameSet again_;          ///< changed while it was being computed
    int runs_ = 0;
    /// Shared with the runs that go on; a new one when they are stopped.
    std::shared_ptr<CancelFlag> flag_ = std::make_shared<CancelFlag>();
    std::shared_ptr<Pace> pace_; ///< goes with the flag
};

} // namespace fennik::app
