#include "app/ui/JobTexts.h"

#include <gtest/gtest.h>

#include <limits>

namespace fennik::test {

namespace {

using namespace ui;
using State = JobSnapshot::State;

/// With plain blanks, as they are typed.
QString plain(QString text) {
    return text.replace(QChar(0x00a0), QLatin1Char(' ')).replace(QChar(0x202f), QLatin1Char(' '));
}

QString all(const JobTexts::Figures& figures) {
    return plain(figures.amounts + QLatin1Char('|') + figures.rest);
}

JobSnapshot running() {
    JobSnapshot job;
    job.title = "Kopírování 4 položek";
    job.state = State::running;
    job.totalBytes = 1'270'000'000;
    job.doneBytes = 547'000'000;
    job.totalFiles = 4;
    job.doneFiles = 2;
    job.bytesPerSecond = 118e6;
    job.secondsLeft = 7.4;
    return job;
}

JobSnapshot inState(State state) {
    auto job = running();
    job.state = state;
    return job;
}

std::shared_ptr<const std::vector<std::string>> errors(std::size_t count) {
    return std::make_shared<const std::vector<std::string>>(count,
                                                            "„x“ nejde zkopírovat: Plný disk");
}

} // namespace

TEST(JobTexts, figuresLeaveOutWhatIsNotKnown) {
    auto job = running();
    EXPECT_EQ(all(JobTexts::figures(job)), "547 MB z 1,27 GB| · 2 z 4 · 118 MB/s · zbývá 0:07");
    job.secondsLeft.reset();
    job.bytesPerSecond = 0;
    job.totalFiles = 1;
    EXPECT_EQ(all(JobTexts::figures(job)), "547 MB z 1,27 GB|");
    job.totalBytes = 0; // an empty file, or nothing but renames
    job.secondsLeft = 3723;
    EXPECT_EQ(all(JobTexts::figures(job)), "2 z 1| · zbývá 1:02:03");
    job.totalFiles = 0;
    job.secondsLeft = std::numeric_limits<double>::infinity();
    EXPECT_EQ(all(JobTexts::figures(job)), "|");
}

TEST(JobTexts, aFileThatGrewIsNotMoreThanDone) {
    auto job = running();
    job.doneBytes = 2'000'000'000;
    EXPECT_EQ(plain(JobTexts::figures(job).amounts), "1,27 GB z 1,27 GB");
    EXPECT_EQ(JobTexts::fraction(job), 1);
    // What has not ended is not whole yet.
    EXPECT_EQ(plain(JobTexts::brief({job})->text), "99 % · 1 z 1");
}

TEST(JobTexts, everyStateHasItsWords) {
    const auto status = [](State state) { return JobTexts::status(inState(state)); };
    EXPECT_EQ(status(State::waiting), "Čeká ve frontě");
    EXPECT_EQ(status(State::preparing), "Počítám, kolik toho je…");
    EXPECT_EQ(status(State::running), "");
    EXPECT_EQ(status(State::paused), "Pozastaveno");
    EXPECT_EQ(status(State::askingConflict), "Čeká na vaše rozhodnutí");
    EXPECT_EQ(status(State::finished), "Hotovo");
    EXPECT_EQ(status(State::cancelled), "Zrušeno");
    auto job = inState(State::finished);
    job.skipped = 2;
    EXPECT_EQ(JobTexts::status(job), "Hotovo, přeskočeno 2");
    job = inState(State::failed);
    job.failure = "„a“ nejde zkopírovat: Plný disk";
    EXPECT_EQ(JobTexts::status(job), "Chyba: „a“ nejde zkopírovat: Plný disk");
}

TEST(JobTexts, theNoteTellsHowFarItCame) {
    const auto note = [](const JobSnapshot& job) { return plain(JobTexts::note(job, "vrátí")); };
    EXPECT_EQ(note(inState(State::paused)), "547 MB z 1,27 GB · 2 z 4");
    EXPECT_EQ(note(inState(State::finished)), "1,27 GB");
    EXPECT_EQ(note(inState(State::cancelled)), "2 z 4 · vrátí");
    auto unstarted = inState(State::cancelled);
    unstarted.doneFiles = 0;
    EXPECT_EQ(note(unstarted), ""); // there is nothing to take back
    EXPECT_EQ(note(inState(State::waiting)), "");
}

TEST(JobTexts, theTargetIsNamedAsPeopleKnowIt) {
    const FileUrl home("/home/jana", FileUrl::Form::directory);
    EXPECT_EQ(JobTexts::target("/media/jana/Záloha/2026", home), "Záloha › 2026");
    EXPECT_EQ(JobTexts::target("/home/jana/Stažené", home), "Stažené");
    EXPECT_EQ(JobTexts::target("/home/jana", home), "jana");
    EXPECT_EQ(JobTexts::target("/srv", home), "srv");
    EXPECT_EQ(JobTexts::target("/", home), "/");
    EXPECT_EQ(JobTexts::target("/srv/a\nb/\xff", home), "a↵b › \uFFFD");
    EXPECT_EQ(JobTexts::target("", home), "");
}

TEST(JobTexts, theSummaryCountsWhatRunsWaitsAndHasEnded) {
    std::vector<JobSnapshot> jobs;
    EXPECT_EQ(JobTexts::summary(jobs), "");
    for (const auto state : {State::finished, State::failed, State::cancelled, State::running,
                             State::paused, State::askingConflict, State::preparing})
        jobs.push_back(inState(state));
    EXPECT_EQ(JobTexts::summary(jobs), "běží 1, čekají 3, hotovo 3");
    jobs.push_back(inState(State::waiting));
    jobs.push_back(inState(State::waiting));
    EXPECT_EQ(JobTexts::summary(jobs), "běží 1, čeká 5, hotovo 3");
    EXPECT_EQ(JobTexts::summary({inState(State::waiting)}), "čeká 1");
}

TEST(JobTexts, screenReadersHearWholeWords) {
    auto job = running();
    EXPECT_EQ(plain(JobTexts::spoken(job)), "Kopírování 4 položek, 43 procent, zbývá 7 sekund");
    job.doneBytes = 30'000'000;
    for (const auto& [seconds, words] : {std::pair{1, "zbývá 1 sekunda"},
                                         {0, "zbývá 0 sekund"},
                                         {123, "zbývají 2 minuty 3 sekundy"},
                                         {300, "zbývá 5 minut"},
                                         {3661, "zbývá 1 hodina 1 minuta"},
                                         {7200, "zbývají 2 hodiny"}}) {
        job.secondsLeft = seconds;
        EXPECT_EQ(plain(JobTexts::spoken(job)),
                  QStringLiteral("Kopírování 4 položek, 2 procenta, %1").arg(words));
    }
    job.state = State::finished;
    job.errors = errors(3);
    EXPECT_EQ(plain(JobTexts::spoken(job)), "Kopírování 4 položek, Hotovo, 3 chyby");
}

TEST(JobTexts, theBriefIsAboutWhatNeedsTheUserFirst) {
    using Tone = JobTexts::Brief::Tone;
    EXPECT_FALSE(JobTexts::brief({}));
    std::vector<JobSnapshot> jobs{inState(State::finished), running(), inState(State::waiting)};
    auto brief = JobTexts::brief(jobs);
    EXPECT_EQ(plain(brief->text), "43 % · 2 z 3");
    EXPECT_EQ(brief->tone, Tone::works);
    jobs[1].state = State::askingConflict;
    brief = JobTexts::brief(jobs);
    EXPECT_EQ(brief->text, "Čeká na vaše rozhodnutí");
    EXPECT_EQ(brief->tone, Tone::asks);
    EXPECT_EQ(JobTexts::brief({jobs[0]})->text, "Hotovo");
    jobs[0].errors = errors(5);
    brief = JobTexts::brief({jobs[0]});
    EXPECT_EQ(brief->text, "Hotovo, 5 chyb");
    EXPECT_EQ(brief->tone, Tone::failed);
}

} // namespace fennik::test
