#pragma once

#include "core/base/FileUrl.h"
#include "core/operations/JobSnapshot.h"

#include <QString>

#include <optional>
#include <string_view>
#include <vector>

/// What is said of jobs, in figures and in words. Safe on any thread.
namespace fennik::ui::JobTexts {

/// How much of the job is done, 0 to 1: in bytes, or in files where there is no data to move.
double fraction(const JobSnapshot& job);

/// What the job is at; empty while it runs, when its figures say so.
QString status(const JobSnapshot& job);

/// The figures of a job that runs. What is not known is left out.
struct Figures {
    QString amounts = {}; ///< "547 MB z 1,27 GB"
    QString rest = {};    ///< " · 2 z 4 · 118 MB/s · zbývá 0:07"

    friend bool operator==(const Figures&, const Figures&) = default;
};
Figures figures(const JobSnapshot& job);

/// What stands below the status, if anything. `undo` says how to take back what a cancelled job
/// has done.
QString note(const JobSnapshot& job, const QString& undo);

/// Where the job puts things, as one knows the place: "Záloha › Smlouvy".
QString target(std::string_view destination, const FileUrl& home);

/// "běží 1, čekají 4, hotovo 3"; empty without jobs.
QString summary(const std::vector<JobSnapshot>& jobs);

/// What a screen reader says of a job: "Kopírování 4 položek, 43 procent, zbývá 7 sekund".
QString spoken(const JobSnapshot& job);

/// All jobs in a few words: "43 % · 1 z 3".
struct Brief {
    enum class Tone { works, asks, done, failed };
    QString text = {};
    double fraction = 0; ///< of the job that it is about
    Tone tone = Tone::works;

    friend bool operator==(const Brief&, const Brief&) = default;
};
/// None without jobs.
std::optional<Brief> brief(const std::vector<JobSnapshot>& jobs);

} // namespace fennik::ui::JobTexts
