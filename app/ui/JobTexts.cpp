#include "app/ui/JobTexts.h"

#include "app/ui/Text.h"
#include "core/base/CzechText.h"
#include "core/listing/Format.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <utility>

namespace fennik::ui::JobTexts {

namespace {

using State = JobSnapshot::State;

const QString separator = QStringLiteral(" · ");

QString number(std::int64_t count) {
    return fromUtf8(Format::grouped(count));
}

QString counted(std::int64_t count, const PluralForms& noun) {
    return number(count) + QLatin1Char(' ') + fromUtf8(pluralForm(count, noun));
}

QString ofTotal(const QString& done, const QString& total) {
    return QStringLiteral("%1 z %2").arg(done, total);
}

QString doneBytes(const JobSnapshot& job) {
    if (job.totalBytes <= 0)
        return {};
    return ofTotal(fromUtf8(Format::bytes(std::min(job.doneBytes, job.totalBytes))),
                   fromUtf8(Format::bytes(job.totalBytes)));
}

QString doneFiles(const JobSnapshot& job) {
    return ofTotal(number(job.doneFiles), number(job.totalFiles));
}

/// The amounts that are known. That none or all of a single file is done goes without saying.
QStringList amounts(const JobSnapshot& job) {
    QStringList known;
    if (job.totalBytes > 0)
        known << doneBytes(job);
    if (job.totalFiles > 1 || (job.totalFiles == 1 && known.empty()))
        known << doneFiles(job);
    return known;
}

/// Whole seconds that are left, where that can be told.
std::optional<std::int64_t> secondsLeft(const JobSnapshot& job) {
    if (!job.secondsLeft || !std::isfinite(*job.secondsLeft) || *job.secondsLeft < 0)
        return std::nullopt;
    return static_cast<std::int64_t>(*job.secondsLeft);
}

/// The last percent is for what has ended.
int percent(const JobSnapshot& job) {
    constexpr int whole = 100;
    const int done = int(fraction(job) * whole);
    return job.state == State::finished ? whole : std::min(done, whole - 1);
}

QString spokenTime(std::int64_t seconds) {
    constexpr std::int64_t sixty = 60;
    const std::int64_t minutes = seconds / sixty % sixty;
    const std::int64_t hours = seconds / sixty / sixty;
    const auto first = hours > 0 ? hours : minutes > 0 ? minutes : seconds;
    QStringList parts{fromUtf8(pluralForm(first, {"zbývá", "zbývají", "zbývá"}))};
    if (hours > 0)
        parts << counted(hours, {"hodina", "hodiny", "hodin"});
    if (minutes > 0)
        parts << counted(minutes, {"minuta", "minuty", "minut"});
    if (parts.size() == 1 || (hours == 0 && seconds % sixty > 0))
        parts << counted(seconds % sixty, {"sekunda", "sekundy", "sekund"});
    return parts.join(QLatin1Char(' '));
}

QString errorCount(std::size_t count) {
    return counted(static_cast<std::int64_t>(count), {"chyba", "chyby", "chyb"});
}

} // namespace

double fraction(const JobSnapshot& job) {
    if (job.state == State::finished)
        return 1;
    const bool hasBytes = job.totalBytes > 0;
    const double total = double(hasBytes ? job.totalBytes : job.totalFiles);
    const double done = double(hasBytes ? job.doneBytes : job.doneFiles);
    return total > 0 ? std::clamp(done / total, 0.0, 1.0) : 0;
}

QString status(const JobSnapshot& job) {
    switch (job.state) {
    case State::failed:
        return QStringLiteral("Chyba: ") + fromUtf8(job.failure);
    case State::waiting:
        return QStringLiteral("Čeká ve frontě");
    case State::preparing:
        return QStringLiteral("Počítám, kolik toho je…");
    case State::running:
        break;
    case State::paused:
        return QStringLiteral("Pozastaveno");
    case State::askingConflict:
        return QStringLiteral("Čeká na vaše rozhodnutí");
    case State::finished:
        return job.skipped == 0 ? QStringLiteral("Hotovo")
                                : QStringLiteral("Hotovo, přeskočeno ") + number(job.skipped);
    case State::cancelled:
        return QStringLiteral("Zrušeno");
    }
    return {};
}

Figures figures(const JobSnapshot& job) {
    auto parts = amounts(job);
    Figures result;
    if (!parts.empty())
        result.amounts = parts.takeFirst();
    if (job.bytesPerSecond >= 1)
        parts << fromUtf8(Format::bytes(std::llround(job.bytesPerSecond))) + QStringLiteral("/s");
    if (const auto left = secondsLeft(job))
        parts << QStringLiteral("zbývá ") + fromUtf8(Format::duration(double(*left)));
    const bool leads = result.amounts.isEmpty();
    result.rest = (leads || parts.empty() ? QString() : separator) + parts.join(separator);
    return result;
}

QString note(const JobSnapshot& job, const QString& undo) {
    switch (job.state) {
    case State::paused:
    case State::askingConflict:
        return amounts(job).join(separator);
    case State::finished:
        return job.totalBytes > 0 ? fromUtf8(Format::bytes(job.totalBytes)) : QString();
    case State::cancelled:
        return job.doneFiles > 0 ? doneFiles(job) + separator + undo : QString();
    default:
        return {};
    }
}

QString target(std::string_view destination, const FileUrl& home) {
    if (destination.empty())
        return {};
    const FileUrl folder{std::string(destination)};
    const auto parent = folder.parent();
    const auto name = shownName(folder.lastComponent());
    const bool isNearHome = folder.path() == home.path() || parent.path() == home.path();
    if (isNearHome || parent.isRoot())
        return name;
    return QStringLiteral("%1 › %2").arg(shownName(parent.lastComponent()), name);
}

QString summary(const std::vector<JobSnapshot>& jobs) {
    const auto running =
        std::ranges::count(jobs, State::running, [](const auto& job) { return job.state; });
    const auto ended = std::ranges::count_if(jobs, &JobSnapshot::hasEnded);
    const auto waiting = std::ssize(jobs) - running - ended;
    QStringList parts;
    if (running > 0)
        parts << QStringLiteral("běží ") + number(running);
    if (waiting > 0)
        parts << fromUtf8(pluralForm(waiting, {"čeká ", "čekají ", "čeká "})) + number(waiting);
    if (ended > 0)
        parts << QStringLiteral("hotovo ") + number(ended);
    return parts.join(QStringLiteral(", "));
}

QString spoken(const JobSnapshot& job) {
    QStringList parts{fromUtf8(job.title)};
    const bool isUnderWay = job.state == State::running || job.state == State::paused ||
                            job.state == State::askingConflict;
    if (isUnderWay)
        parts << counted(percent(job), {"procento", "procenta", "procent"});
    const auto left = secondsLeft(job);
    if (job.state == State::running && left)
        parts << spokenTime(*left);
    if (const auto said = status(job); !said.isEmpty())
        parts << said;
    if (!job.errors->empty())
        parts << errorCount(job.errors->size());
    return parts.join(QStringLiteral(", "));
}

std::optional<Brief> brief(const std::vector<JobSnapshot>& jobs) {
    if (jobs.empty())
        return std::nullopt;
    const auto asking = std::ranges::find(jobs, State::askingConflict, &JobSnapshot::state);
    if (asking != jobs.end())
        return Brief{status(*asking), fraction(*asking), Brief::Tone::asks};
    const auto current =
        std::ranges::find_if(jobs, [](const JobSnapshot& job) { return !job.hasEnded(); });
    if (current != jobs.end()) {
        const auto place = current - jobs.begin() + 1;
        return Brief{QStringLiteral("%1\u00a0% · %2 z %3")
                         .arg(percent(*current))
                         .arg(place)
                         .arg(std::ssize(jobs)),
                     fraction(*current), Brief::Tone::works};
    }
    std::size_t errors = 0;
    for (const auto& job : jobs)
        errors += job.errors->size();
    if (errors > 0)
        return Brief{QStringLiteral("Hotovo, ") + errorCount(errors), 1, Brief::Tone::failed};
    return Brief{QStringLiteral("Hotovo"), 1, Brief::Tone::done};
}

} // namespace fennik::ui::JobTexts
