// Changes a folder that is shown, and counts how often it is read again and its rows are built
// anew: a burst of new files, a larger one of changed files, and changes that go on:
//   watched_changes FOLDER EMPTY_FOLDER
// Prints the counts; of the changes that go on also, in nanoseconds, the shortest time of a
// reading.
#include "benchmarks/ShownSession.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <iostream>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using namespace fennik;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr int fileCount = 1'000;
/// Longer than any pause before the next reading.
constexpr auto quietTime = 3s;

[[noreturn]] void giveUp(const char* reason) {
    std::cerr << reason << '\n';
    std::exit(EXIT_FAILURE);
}

/// The files that are made in the folder, and taken out in the end.
class Files {
public:
    explicit Files(std::string folder) : folder_(std::move(folder)) {}
    ~Files() {
        for (int number = 0; number < fileCount; ++number)
            unlink(path(number).c_str());
    }
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;

    static std::string name(int number) { return "nový " + std::to_string(number % fileCount); }

    void make(int number) const {
        const int file = open(path(number).c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0644);
        if (file < 0)
            giveUp("A file cannot be made.");
        close(file);
    }

    void resize(int number, int size) const {
        if (truncate(path(number).c_str(), size) != 0)
            giveUp("A file cannot be changed.");
    }

private:
    std::string path(int number) const { return folder_ + '/' + name(number); }

    std::string folder_;
};

struct Counts {
    int readings = 0;
    std::int64_t rebuilds = 0;
    Clock::duration readingTime{}; ///< the shortest
};

class Observer final : public QObject {
public:
    explicit Observer(app::PanelModel& panel) : panel_(panel) {
        connect(&panel_, &app::PanelModel::changed, this, &Observer::note);
    }

    /// What the panel does while `change` is called with all numbers below `count`, spread evenly
    /// over `time`, and afterwards.
    Counts during(int count, Clock::duration time, const std::function<void(int)>& change) {
        const int firstToken = token_ = panel_.loadToken();
        const auto firstGeneration = panel_.generation();
        readingTimes_.clear();
        std::atomic<bool> isDone = false;
        std::jthread changing([&] {
            const auto started = Clock::now();
            for (int number = 0; number < count; ++number) {
                std::this_thread::sleep_until(started + time * number / count);
                change(number);
            }
            isDone = true;
        });
        for (auto busy = Clock::now(); Clock::now() - busy < quietTime;) {
            if (!isDone || panel_.loading())
                busy = Clock::now();
            QApplication::processEvents();
            std::this_thread::sleep_for(1ms);
        }
        if (readingTimes_.empty())
            giveUp("The changes were not noticed.");
        return {.readings = panel_.loadToken() - firstToken,
                .rebuilds = panel_.generation() - firstGeneration,
                .readingTime = *std::ranges::min_element(readingTimes_)};
    }

private:
    void note() {
        if (std::exchange(token_, panel_.loadToken()) != panel_.loadToken())
            started_ = Clock::now();
        if (std::exchange(wasLoading_, panel_.loading()) && !panel_.loading())
            readingTimes_.push_back(Clock::now() - started_);
    }

    app::PanelModel& panel_;
    int token_ = 0;
    bool wasLoading_ = false;
    Clock::time_point started_;
    std::vector<Clock::duration> readingTimes_;
};

void expectSize(const app::PanelModel& panel, int number, int size) {
    const auto row = panel.rawItems().rowOf(Files::name(number));
    if (!row || panel.rawItems().view(*row).size != size)
        giveUp("The panel does not show what the folder has.");
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 3)
        return 2;
    const Files files(arguments[1]);
    bench::ShownSession session(argumentCount, arguments, arguments[1], arguments[2]);
    const auto& panel = session.panel();
    Observer observer(session.panel());

    const auto created = observer.during(fileCount, 200ms, [&](int number) { files.make(number); });
    expectSize(panel, fileCount - 1, 0);

    constexpr int manyChanges = 10 * fileCount;
    const auto changed =
        observer.during(manyChanges, 1s, [&](int number) { files.resize(number, number); });
    expectSize(panel, fileCount - 1, manyChanges - 1);

    const auto goingOn =
        observer.during(fileCount, 5s, [&](int number) { files.resize(number, number); });
    expectSize(panel, fileCount - 1, fileCount - 1);

    const auto time = std::chrono::duration_cast<std::chrono::nanoseconds>(goingOn.readingTime);
    std::cout << "created=" << created.readings << " changed=" << changed.rebuilds
              << " going_on=" << goingOn.readings << " time=" << time.count() << '\n';
    return 0;
}
