#include "app/ui/OperationsCard.h"
#include "app/ui/JobErrors.h"
#include "app/ui/ProgressBar.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPaintEvent>
#include <QScrollArea>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace fennik::test {

namespace {

using namespace ui;
using State = JobSnapshot::State;

JobSnapshot job(State state) {
    JobSnapshot result;
    result.id = Uuid::random();
    result.title = "Kopírování 4 položek";
    result.destination = "/media/jana/Záloha";
    result.state = state;
    result.totalBytes = 1'270'000'000;
    result.doneBytes = 547'000'000;
    result.totalFiles = 4;
    result.doneFiles = 2;
    return result;
}

void addErrors(JobSnapshot& job, std::size_t count) {
    auto errors = *job.errors;
    while (errors.size() < count)
        errors.push_back("„" + std::to_string(errors.size()) + "“ nejde zkopírovat: Plný disk");
    job.errors = std::make_shared<const std::vector<std::string>>(std::move(errors));
}

/// Counts the times at which something of a widget was painted.
class PaintCount final : public QObject {
public:
    explicit PaintCount(QWidget& widget) { widget.installEventFilter(this); }
    int count = 0;
    QRegion region; ///< that was painted last

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            ++count;
            region = static_cast<QPaintEvent*>(event)->region();
        }
        return false;
    }
};

class OperationsCardTest : public testing::Test {
protected:
    OperationsCardTest() {
        window.resize(1440, 900);
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(&field, 1);
        layout->addWidget(&card);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        field.setFocus();
        card.setHeightLimit(360);
        QObject::connect(&card, &OperationsCard::left, &field, [this] { field.setFocus(); });
    }

    void show(std::vector<JobSnapshot> shown) {
        jobs = std::move(shown);
        card.setJobs(jobs);
        card.setOnShow(true);
        EXPECT_TRUE(QTest::qWaitFor([&] {
            return card.isVisible() && card.height() == card.minimumHeight() && isAtRest();
        }));
    }
    bool isAtRest() {
        const int before = card.height();
        QTest::qWait(150);
        return card.height() == before;
    }
    JobRow& row(std::size_t place) { return *card.rows()[place]; }
    QAbstractButton& button(std::size_t place, const char* name) {
        return *row(place).findChild<QAbstractButton*>(name);
    }
    static void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }

    Theme theme{Appearance::light};
    Icons icons{theme};
    std::vector<JobSnapshot> jobs;
    QWidget window;
    QLineEdit field{&window};
    OperationsCard card{FileUrl("/home/jana", FileUrl::Form::directory), theme, icons, &window};
};

} // namespace

TEST_F(OperationsCardTest, aRowOffersWhatItsJobCanDo) {
    auto stopped = job(State::waiting);
    stopped.paused = true;
    show({job(State::running), job(State::preparing), job(State::paused), stopped,
          job(State::askingConflict), job(State::waiting), job(State::finished)});
    const auto offered = [&](std::size_t place) {
        QStringList names;
        for (const char* name : {"jobPause", "jobResume", "jobCancel", "jobRemove"}) {
            if (!button(place, name).isHidden())
                names << QLatin1String(name);
        }
        return names;
    };
    EXPECT_EQ(offered(0), (QStringList{"jobPause", "jobCancel"}));
    EXPECT_EQ(offered(1), (QStringList{"jobPause", "jobCancel"}));
    EXPECT_EQ(offered(2), (QStringList{"jobResume", "jobCancel"}));
    EXPECT_EQ(offered(3), (QStringList{"jobResume", "jobCancel"}));
    EXPECT_EQ(offered(4), QStringList{"jobCancel"});
    EXPECT_EQ(offered(5), QStringList{"jobCancel"});
    EXPECT_EQ(offered(6), QStringList{"jobRemove"});
    EXPECT_EQ(button(0, "jobCancel").toolTip(), "Zrušit (rozpracovaný soubor se uklidí)");

    const QSignalSpy paused(&card, &OperationsCard::pauseRequested);
    QSignalSpy removed(&card, &OperationsCard::removeRequested);
    QTest::mouseClick(&button(1, "jobPause"), Qt::LeftButton);
    QTest::mouseClick(&button(6, "jobRemove"), Qt::LeftButton);
    ASSERT_EQ(paused.size(), 1);
    EXPECT_EQ(paused[0][0].value<Uuid>(), jobs[1].id);
    ASSERT_EQ(removed.size(), 1);
    EXPECT_EQ(removed[0][0].value<Uuid>(), jobs[6].id);
    EXPECT_EQ(QApplication::focusWidget(), &field);
}

TEST_F(OperationsCardTest, itIsAsHighAsItsRowsUpToTheLimit) {
    show({job(State::running)});
    const int one = card.height();
    show({jobs[0], job(State::waiting)});
    EXPECT_EQ(card.height(), one + theme.px(46));
    std::vector<JobSnapshot> many;
    while (many.size() < 30)
        many.push_back(job(State::waiting));
    show(many);
    EXPECT_EQ(card.height(), 360);
    EXPECT_GT(card.findChild<QScrollArea*>()->widget()->height(), 30 * theme.px(46) - 2);
    card.setOnShow(false);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !card.isVisible(); }));
}

TEST_F(OperationsCardTest, theKeyboardWalksSteersAndLeaves) {
    auto ended = job(State::finished);
    addErrors(ended, 3);
    show({ended, job(State::running), job(State::waiting)});
    QSignalSpy paused(&card, &OperationsCard::pauseRequested);
    const QSignalSpy resumed(&card, &OperationsCard::resumeRequested);
    const QSignalSpy cancelled(&card, &OperationsCard::cancelRequested);
    const QSignalSpy removed(&card, &OperationsCard::removeRequested);
    card.takeFocus();
    EXPECT_TRUE(row(1).hasFocus()); // which is at work
    press(Qt::Key_Space);
    EXPECT_EQ(paused.size(), 1);
    jobs[1].state = State::paused;
    jobs[1].paused = true;
    card.setJobs(jobs);
    press(Qt::Key_Space);
    EXPECT_EQ(resumed.size(), 1);
    press(Qt::Key_Backspace);
    EXPECT_EQ(cancelled.size(), 1);
    press(Qt::Key_Up);
    press(Qt::Key_Up); // there is none above
    EXPECT_TRUE(row(0).hasFocus());
    press(Qt::Key_Right);
    EXPECT_TRUE(row(0).showErrors());
    press(Qt::Key_Left);
    EXPECT_FALSE(row(0).showErrors());
    press(Qt::Key_Backspace);
    EXPECT_EQ(removed.size(), 1);
    EXPECT_EQ(cancelled.size(), 1);

    jobs.erase(jobs.begin());
    card.setJobs(jobs); // what has the keyboard goes
    EXPECT_TRUE(row(0).hasFocus());
    press(Qt::Key_Down);
    EXPECT_TRUE(row(1).hasFocus());
    press(Qt::Key_Escape);
    EXPECT_TRUE(field.hasFocus());
    card.takeFocus();
    card.setJobs({});
    EXPECT_TRUE(field.hasFocus());
}

TEST_F(OperationsCardTest, errorsUnfoldAndCanBeCopied) {
    auto failed = job(State::failed);
    addErrors(failed, 3);
    show({failed, job(State::waiting)});
    const int folded = card.height();
    QTest::mouseClick(&button(0, "jobUnfold"), Qt::LeftButton);
    auto* errors = row(0).findChild<JobErrors*>();
    ASSERT_NE(errors, nullptr);
    EXPECT_EQ(errors->document()->blockCount(), 3);
    EXPECT_GT(card.height(), folded + 3 * theme.px(16));
    EXPECT_GE(row(1).y(), errors->geometry().bottom());
    errors->selectAll();
    addErrors(jobs[0], 5);
    card.setJobs(jobs);
    EXPECT_EQ(errors->document()->blockCount(), 5);
    EXPECT_TRUE(errors->textCursor().hasSelection()); // what comes in takes nothing away
    QTest::mouseClick(&button(0, "jobUnfold"), Qt::LeftButton);
    EXPECT_EQ(card.height(), folded);
}

TEST_F(OperationsCardTest, errorsUnfoldAtTheBottomOfTheCardToo) {
    auto failed = job(State::failed);
    addErrors(failed, 3);
    show({failed});
    button(0, "jobUnfold").toggle(); // as a screen reader does
    EXPECT_TRUE(row(0).showErrors());
    QApplication::processEvents();
    const auto picture = card.grab().toImage();
    const auto low = picture.height() - 1;
    EXPECT_EQ(picture.pixelColor(0, low), theme.tokens().window); // round corners
    EXPECT_EQ(picture.pixelColor(picture.width() / 2, low - 3), theme.tokens().errSoft);
    button(0, "jobUnfold").toggle();
    EXPECT_FALSE(row(0).showErrors());
}

TEST_F(OperationsCardTest, ofVeryManyErrorsTheRestIsCounted) {
    auto running = job(State::running);
    addErrors(running, JobErrors::mostShown);
    show({running});
    row(0).setShowErrors(true);
    const auto* errors = row(0).findChild<JobErrors*>();
    const auto last = [&] { return errors->document()->lastBlock().text(); };
    EXPECT_TRUE(last().startsWith("„1999“"));
    addErrors(jobs[0], 50'000);
    card.setJobs(jobs);
    EXPECT_EQ(last(), "a další 48000");
    addErrors(jobs[0], 50'001);
    card.setJobs(jobs);
    EXPECT_EQ(last(), "a další 48001");
    EXPECT_EQ(errors->document()->blockCount(), int(JobErrors::mostShown) + 1);
    EXPECT_LE(card.height(), 360);
}

TEST_F(OperationsCardTest, onlyWhatChangesIsPaintedAndFiguresRarely) {
    show({job(State::running), job(State::waiting)});
    QTest::qWait(300);
    const PaintCount running(row(0));
    const PaintCount waiting(row(1));
    QElapsedTimer elapsed;
    elapsed.start();
    while (elapsed.elapsed() < 1000) {
        jobs[0].doneBytes += 7'000'000;
        jobs[0].bytesPerSecond += 1'000'000;
        card.setJobs(jobs);
        QTest::qWait(20);
    }
    EXPECT_EQ(waiting.count, 0);
    EXPECT_GE(running.count, 2);
    EXPECT_FALSE(running.region.contains(QPoint(theme.px(60), theme.px(15)))) << "the title";
    const auto detail = QPoint(row(0).width() - theme.px(300), theme.px(23));
    PaintCount figures(row(0));
    elapsed.restart();
    int times = 0;
    while (elapsed.elapsed() < 1000) {
        jobs[0].bytesPerSecond += 1'000'000; // no bar moves
        card.setJobs(jobs);
        const int before = figures.count;
        QTest::qWait(20);
        times += figures.count > before && figures.region.contains(detail) ? 1 : 0;
    }
    EXPECT_GE(times, 2);
    EXPECT_LE(times, 5);
    jobs[0].state = State::askingConflict; // is news at once
    figures.count = 0;
    card.setJobs(jobs);
    QApplication::processEvents();
    EXPECT_GE(figures.count, 1);
}

TEST_F(OperationsCardTest, screenReadersFindAProgressBar) {
    show({job(State::running)});
    auto* heard = QAccessible::queryAccessibleInterface(&row(0));
    EXPECT_EQ(heard->role(), QAccessible::ProgressBar);
    EXPECT_EQ(heard->text(QAccessible::Name), "Kopírování 4 položek, 43 procent");
    ASSERT_NE(heard->valueInterface(), nullptr);
    EXPECT_EQ(heard->valueInterface()->currentValue().toInt(), 43);
    const auto* bar = row(0).findChild<ProgressBar*>();
    EXPECT_FALSE(bar->paused());
    EXPECT_NEAR(bar->fraction(), 0.43, 0.01);
}

} // namespace fennik::test
