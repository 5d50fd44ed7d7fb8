#include "app/model/CommandLine.h"
#include "app/ui/JobRow.h"
#include "app/ui/KeyButton.h"
#include "app/ui/OperationsCard.h"
#include "app/ui/OutputCard.h"
#include "app/ui/PanelMessage.h"
#include "app/ui/PanelTable.h"
#include "app/ui/PanelView.h"
#include "app/ui/StatusLine.h"
#include "app/ui/dialogs/LinesDialog.h"
#include "app/ui/dialogs/QuitDialog.h"
#include "tests/support/JobBody.h"
#include "tests/support/WindowFixture.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTest>

#include <chrono>
#include <filesystem>
#include <thread>

namespace fennik::test {

namespace {

using namespace ui;

/// A window over an application whose jobs go on until they are cancelled.
class QueueWindowTest : public WindowFixture {
protected:
    QueueWindowTest() {
        temp.folder("left");
        window.show();
        app.start(temp.path("left"), temp.path("left"));
        settle();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    Uuid addJob() {
        const auto id = app.engine().enqueue(
            {.title = "Kopírování 2 položek"}, {}, bodyOf([](OperationContext& context) {
                while (context.checkpoint() == Checkpoint::goOn)
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }));
        settle();
        return id;
    }
    bool waitForJobs() {
        return QTest::qWaitFor([this] {
            settle();
            return !app.hasUnfinishedJobs();
        });
    }
    template <class Widget>
    Widget* shown(const char* name = nullptr) {
        for (auto* widget : window.findChildren<Widget*>(QString::fromLatin1(name))) {
            if (widget->isVisible())
                return widget;
        }
        return nullptr;
    }
    void click(const char* name) {
        auto* button = shown<QAbstractButton>(name);
        ASSERT_NE(button, nullptr) << name;
        QTest::mouseClick(button, Qt::LeftButton);
        settle();
    }
    QString undoItem() {
        for (auto* menu : window.findChildren<QMenu*>()) {
            for (const auto* item : menu->actions()) {
                if (item->text().startsWith("Vrátit poslední operaci"))
                    return item->text();
            }
        }
        return {};
    }
    const PanelTable* panel() { return &window.view(app::PanelSide::left).table(); }
};

} // namespace

TEST_F(QueueWindowTest, closingAsksWhileJobsRun) {
    const auto id = addJob();
    EXPECT_FALSE(window.close());
    ASSERT_NE(shown<QuitDialog>(), nullptr);
    EXPECT_FALSE(window.close()); // asks once
    EXPECT_EQ(window.findChildren<QuitDialog*>().size(), 1);
    click("dialogCancel");
    EXPECT_EQ(shown<QuitDialog>(), nullptr);
    EXPECT_EQ(QApplication::focusWidget(), panel());
    EXPECT_TRUE(app.hasUnfinishedJobs());

    window.close();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F7); // is no key of the question
    EXPECT_FALSE(app.dialog());
    click("dialogConfirm");
    EXPECT_FALSE(window.isVisible());
    window.show();
    app.cancelJob(id);
    ASSERT_TRUE(waitForJobs());
}

TEST_F(QueueWindowTest, nothingIsAskedWithoutJobsOrWhenTheSystemEndsIt) {
    const auto id = addJob();
    app.cancelJob(id);
    ASSERT_TRUE(waitForJobs());
    EXPECT_TRUE(window.close());
    window.show();
    addJob();
    window.closeAnyway();
    EXPECT_FALSE(window.isVisible());
}

TEST_F(QueueWindowTest, theQueueIsACardOrAPill) {
    EXPECT_EQ(shown<QAbstractButton>("queuePill"), nullptr);
    const auto id = addJob();
    app.setShowsOperations(false);
    click("queuePill");
    EXPECT_TRUE(app.showsOperations());
    ASSERT_NE(shown<OperationsCard>(), nullptr);
    EXPECT_EQ(shown<QAbstractButton>("queuePill"), nullptr);
    EXPECT_EQ(QApplication::focusWidget(), panel());

    auto* row = shown<OperationsCard>()->rows().front();
    ASSERT_TRUE(QTest::qWaitFor([&] {
        settle();
        return row->job().state == JobSnapshot::State::running;
    }));
    click("jobPause");
    ASSERT_TRUE(QTest::qWaitFor([&] {
        settle();
        return row->job().state == JobSnapshot::State::paused;
    }));
    click("jobResume");
    click("jobCancel");
    ASSERT_TRUE(waitForJobs());
    EXPECT_EQ(row->job().state, JobSnapshot::State::cancelled);
    click("tidyOperations");
    EXPECT_TRUE(app.jobs().empty());
    click("hideOperations");
    EXPECT_FALSE(app.showsOperations());
    EXPECT_EQ(app.engine().snapshots().size(), 0U) << id.text();
}

TEST_F(QueueWindowTest, anEmptyFolderOffersWhatFillsIt) {
    clipboard.held = {.paths = {temp.path("picture")}};
    app.activate(app::PanelSide::right);
    const auto offer = [this](const char* title) {
        const auto& left = window.view(app::PanelSide::left);
        for (auto* button : left.findChild<PanelMessage*>()->findChildren<KeyButton*>()) {
            if (button->text() == title && button->isVisible())
                QTest::mouseClick(button, Qt::LeftButton);
        }
    };
    offer("Nová složka");
    const auto dialog = app.dialog();
    ASSERT_TRUE(dialog);
    EXPECT_TRUE(std::holds_alternative<app::NewFolderDialog>(*dialog));
    EXPECT_EQ(app.activeSide(), app::PanelSide::left);
    app.closeDialog();
    offer("Vložit");
    ASSERT_TRUE(app.dialog());
    EXPECT_TRUE(std::holds_alternative<app::PasteDialog>(*app.dialog()));
}

TEST_F(QueueWindowTest, theCardLeavesTheCursorInView) {
    for (int i = 0; i < 99; ++i)
        temp.file("left/" + std::to_string(i));
    app.perform(app::KAction::refresh);
    settle();
    app.activePanel().setCursor(panel()->rowsPerPage() - 1);
    const auto isInView = [this] {
        return panel()->viewport()->rect().contains(panel()->cursorRect().adjusted(0, 0, -1, 0));
    };
    ASSERT_TRUE(isInView());
    const int before = panel()->viewport()->height();
    app.setShowsOperations(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return panel()->viewport()->height() < before - 30; }));
    EXPECT_TRUE(isInView());
}

TEST_F(QueueWindowTest, theButtonOfAToastDoesWhatItSays) {
    app.showToast(app::Toast{.text = "Hotovo, 3 chyb",
                             .kind = app::Toast::Kind::error,
                             .action = app::Toast::Action::operations});
    click("toastButton");
    EXPECT_TRUE(app.showsOperations());
    app.showToast(app::Toast{.text = "první\ndruhá\ntřetí", .undoable = true});
    EXPECT_EQ(shown<KeyButton>("toastButton")->text(), "Vrátit");
    click("toastAllLines");
    ASSERT_NE(shown<LinesDialog>(), nullptr);
    EXPECT_EQ(shown<QPlainTextEdit>("dialogLines")->toPlainText(), "první\ndruhá\ntřetí");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_EQ(shown<LinesDialog>(), nullptr);
    EXPECT_EQ(QApplication::focusWidget(), panel());
}

TEST_F(QueueWindowTest, theActivePanelSaysWhatTakesItsTime) {
    const auto said = [&](app::PanelSide side) {
        QString text;
        for (const auto* label :
             window.view(side).findChild<StatusLine*>()->findChildren<QLabel*>())
            text += label->text();
        return text.contains("Vytvářím složku „x“…");
    };
    app.perform(app::KAction::newFolder);
    app.confirmNewFolder("x");
    EXPECT_FALSE(said(app::PanelSide::left)); // it may be done in a moment
    timers.pass(std::chrono::milliseconds(150));
    EXPECT_TRUE(said(app::PanelSide::left));
    EXPECT_FALSE(said(app::PanelSide::right));
    app.perform(app::KAction::switchPanel);
    EXPECT_TRUE(said(app::PanelSide::right));
    settle();
    EXPECT_FALSE(said(app::PanelSide::right));
}

TEST_F(QueueWindowTest, theMenuNamesWhatUndoTakesBack) {
    EXPECT_EQ(undoItem(), "Vrátit poslední operaci");
    app.perform(app::KAction::newFolder);
    app.confirmNewFolder("R&D");
    settle();
    EXPECT_EQ(undoItem(), "Vrátit poslední operaci: Nová složka „R&&D“");
    app.showToast(app::Toast{.text = "Složka je hotová", .undoable = true});
    click("toastButton");
    EXPECT_EQ(undoItem(), "Vrátit poslední operaci");
    EXPECT_FALSE(std::filesystem::exists(temp.path("left/R&D")));
}

TEST_F(QueueWindowTest, tabGoesRoundFromTheCommandLine) {
    const auto focus = [] { return QApplication::focusWidget(); };
    app.perform(app::KAction::commandLine);
    const auto* field = shown<QLineEdit>("commandField");
    ASSERT_EQ(focus(), field);
    QTest::keyClick(focus(), Qt::Key_Tab);
    EXPECT_EQ(focus(), panel());

    const auto job = addJob();
    app.setShowsOperations(true);
    app.perform(app::KAction::commandLine);
    QTest::keyClick(focus(), Qt::Key_Tab);
    EXPECT_EQ(focus(), shown<JobRow>());
    QTest::keyClick(focus(), Qt::Key_Escape);
    EXPECT_EQ(focus(), panel());
    app.cancelJob(job);
    ASSERT_TRUE(waitForJobs());

    app.perform(app::KAction::commandLine);
    QTest::keyClicks(focus(), "true");
    QTest::keyClick(focus(), Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([this] {
        settle();
        return app.commandLine().lastRun()->state == app::CommandRun::State::ended;
    }));
    EXPECT_EQ(focus(), field);
    QTest::keyClick(focus(), Qt::Key_Backtab, Qt::ShiftModifier);
    for (const auto* name : {"outputText", "copyOutput", "closeOutput", "outputEdge"}) {
        EXPECT_EQ(focus()->objectName(), name);
        QTest::keyClick(focus(), Qt::Key_Tab);
    }
    EXPECT_EQ(focus(), field);
    // The edge moves by keys too, and what is shown keeps its height until the program ends.
    auto* card = window.findChild<OutputCard*>();
    const int usual = theme.px(8 + 286);
    ASSERT_TRUE(QTest::qWaitFor([card, usual] { return card->height() == usual; }));
    auto* edge = shown<QWidget>("outputEdge");
    edge->setFocus();
    QTest::keyClick(edge, Qt::Key_Down);
    const int height = card->height();
    EXPECT_EQ(height, usual - theme.px(24));
    QTest::keyClick(edge, Qt::Key_Escape);
    EXPECT_EQ(focus(), panel());
    ASSERT_TRUE(QTest::qWaitFor([card] { return !card->isVisible(); }));
    app.perform(app::KAction::commandLine);
    QTest::keyClick(focus(), Qt::Key_Up);
    QTest::keyClick(focus(), Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([card, height] { return card->height() == height; }));
    EXPECT_TRUE(app.commandLine().shutDown());
}

} // namespace fennik::test
