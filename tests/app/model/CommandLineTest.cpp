#include "app/model/CommandLine.h"

#include "core/base/Utf8.h"
#include "tests/support/AppFixture.h"
#include "tests/support/Processes.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <thread>
#include <unistd.h>

namespace fennik::app {

namespace {

using namespace std::chrono_literals;
using testing::EndsWith;
using testing::HasSubstr;
using State = CommandRun::State;

/// Commands run in the real shell.
class CommandLineTest : public test::AppFixture {
protected:
    CommandLineTest() {
        setenv("ZDOTDIR", temp.path("home").c_str(), 1); // nobody's own settings of the shell
        show(temp.url().path());
    }
    ~CommandLineTest() override {
        app.stopJobs();
        EXPECT_TRUE(line.shutDown());
        transfers.shutDown(5s);
    }

    void show(const std::string& folder) {
        app.activePanel().navigate(FileUrl(folder, FileUrl::Form::directory));
        settle();
        ASSERT_EQ(app.activePanel().folder().path(), folder);
    }
    void enter(const std::string& command) {
        line.setText(command);
        line.run();
    }
    template <class Condition>
    bool comes(Condition condition) {
        while (!condition()) {
            if (!main.await())
                return false;
            settle();
        }
        return true;
    }
    bool ends() {
        return comes([this] { return line.lastRun()->state != State::running; });
    }
    std::string output() const { return line.lastRun()->output.text(); }
    std::string outputOf(const std::string& command) {
        enter(command);
        EXPECT_TRUE(ends());
        return output();
    }
    int codeOf(const std::string& command) {
        enter(command);
        EXPECT_TRUE(ends());
        return line.lastRun()->exitCode.value_or(-1);
    }
    /// The number that a command has written as its first line, once it has.
    std::string processWritten() {
        EXPECT_TRUE(comes([this] { return line.lastRun()->output.lineCount() > 1; }));
        return line.lastRun()->output.line(0);
    }

    AppModel app{appServices(), home()};
    CommandLine& line = app.commandLine();
};

TEST_F(CommandLineTest, tellsHowACommandHasEnded) {
    EXPECT_EQ(codeOf("true"), 0);
    EXPECT_EQ(codeOf("exit 3"), 3);
    EXPECT_EQ(codeOf("sh -c 'kill -TERM $$'"), 143);
    EXPECT_EQ(codeOf("kill -KILL $$"), 137);
    EXPECT_EQ(codeOf("not-a-program-at-all"), 127);
    EXPECT_EQ(codeOf("cat"), 0); // nothing to read
    EXPECT_EQ(line.text(), "");
    EXPECT_EQ(line.lastRun()->command, "cat");
    EXPECT_EQ(line.lastRun()->directory, temp.url().path());
}

TEST_F(CommandLineTest, showsBothStreamsInTheOrderOfArrival) {
    EXPECT_EQ(outputOf("pwd; echo one; echo two >&2; echo three; printf 'no end'"),
              temp.url().path() + "\none\ntwo\nthree\nno end");
    EXPECT_EQ(outputOf("printf '\\305'; sleep 0.2; printf '\\231\\033[3'; sleep 0.2; printf '1mx'"),
              "řx");
}

TEST_F(CommandLineTest, runsNothingThatAFolderIsCalled) {
    const std::string names[] = {"it's",
                                 "$(touch pwned)",
                                 "`touch pwned`; touch pwned",
                                 "-rf",
                                 "line\nbreak'; touch pwned; '",
                                 "\"\\$HOME\\\"",
                                 "\xff\xfe"};
    for (const auto& name : names) {
        temp.folder(name);
        temp.file(name + "/here");
        show(temp.path(name));
        EXPECT_EQ(codeOf("test -e here && test \"$PWD\" -ef . && test $(ls -A | wc -l) = 1"), 0)
            << name;
    }
    EXPECT_FALSE(std::filesystem::exists(temp.path("pwned")));
}

TEST_F(CommandLineTest, passesNothingOfItsOwnOn) {
    const int leak = open("/", O_RDONLY); // without close-on-exec
    // Of the listing itself there is one more.
    EXPECT_EQ(outputOf("sh -c 'ls /proc/self/fd | wc -l'"), "4\n");
    EXPECT_EQ(outputOf("readlink /proc/self/fd/0"), "/dev/null\n");
    close(leak);
    // Neither what is ignored here, nor this one's group, nor its terminal.
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(codeOf("exec sh -c 'kill -PIPE $$'"), 141);
    std::signal(SIGPIPE, before);
    EXPECT_EQ(codeOf("test $(ps -o sid= -p $$) -eq $$"), 0);
    EXPECT_NE(codeOf("sh -c ': > /dev/tty'"), 0);
}

TEST_F(CommandLineTest, tellsTheEndThoughSomethingGoesOn) {
    enter("(sleep 1; echo late; exec sleep 1000) & echo $!; echo early");
    ASSERT_TRUE(ends());
    EXPECT_EQ(line.lastRun()->exitCode, 0);
    EXPECT_THAT(output(), EndsWith("\nearly\n"));
    const auto process = processWritten();
    // What comes later is shown too, and everything goes with the next command.
    EXPECT_TRUE(comes([this] { return output().ends_with("late\n"); }));
    EXPECT_TRUE(test::isAlive(process));
    EXPECT_EQ(outputOf("echo next"), "next\n");
    EXPECT_TRUE(test::endsSoon(process));
}

TEST_F(CommandLineTest, endsAllOfACommandThatIsStopped) {
    enter("trap '' TERM; (trap '' TERM; sleep 1000 > /dev/null 2>&1) & echo $!; sleep 1000; sleep "
          "1000");
    const auto deaf = processWritten();
    line.stop();
    ASSERT_TRUE(ends());
    EXPECT_EQ(line.lastRun()->exitCode, 137);
    EXPECT_TRUE(test::endsSoon(deaf));
    enter("echo $$; exec sleep 1000");
    const auto polite = processWritten();
    line.stop();
    ASSERT_TRUE(ends());
    EXPECT_EQ(line.lastRun()->exitCode, 143) << "it was asked, not killed";
}

TEST_F(CommandLineTest, leavesNothingBehind) {
    enter("sleep 1000 > /dev/null 2>&1 & echo $!");
    const auto quiet = processWritten();
    enter("sleep 1000 & echo $!; wait");
    const auto loud = processWritten();
    EXPECT_TRUE(line.closeOutput());
    EXPECT_FALSE(line.closeOutput());
    EXPECT_TRUE(test::isAlive(loud)); // only its output is closed
    EXPECT_TRUE(line.shutDown());
    EXPECT_FALSE(test::isAlive(quiet));
    EXPECT_FALSE(test::isAlive(loud));
    EXPECT_THAT(test::childProcesses(), testing::IsEmpty());
}

TEST_F(CommandLineTest, keepsTheEndOfAFlood) {
    enter("yes x");
    EXPECT_TRUE(comes([this] { return line.lastRun()->output.omitted() > 0; }));
    std::this_thread::sleep_for(300ms);
    EXPECT_LE(main.count(), 1U); // it waits until the last output was shown
    EXPECT_TRUE(comes([this] { return line.lastRun()->output.omitted() > 100'000; }));
    EXPECT_THAT(output(), testing::StartsWith("… starší výstup vynechán\nx\nx\n"));
    EXPECT_LE(line.lastRun()->output.lineCount(), CommandOutput::mostLines + 1);
    EXPECT_THAT(outputOf("seq 5000"), testing::StartsWith("1\n2\n"));
    EXPECT_THAT(outputOf("seq 5001"), testing::StartsWith("… starší výstup vynechán\n2\n"));

    // Noise may end inside an escape sequence, which is cancelled here.
    const auto text = outputOf("head -c 100000000 /dev/urandom; print -n '\\x18\\nend'");
    EXPECT_LE(text.size(), CommandOutput::mostBytes + 100);
    EXPECT_THAT(text, EndsWith("\nend"));
    EXPECT_TRUE(Utf8::isValid(text));
}

TEST_F(CommandLineTest, saysWhyACommandDoesNotRun) {
    temp.folder("gone");
    show(temp.path("gone"));
    std::filesystem::remove(temp.path("gone"));
    EXPECT_EQ(outputOf("echo x"), "Příkaz nejde spustit: složka „gone“ už neexistuje.\n");
    EXPECT_EQ(line.lastRun()->state, State::notStarted);
    EXPECT_EQ(line.lastRun()->exitCode, std::nullopt);
    show(temp.url().path());
    EXPECT_EQ(outputOf("echo " + std::string(4'000'000, 'x')),
              "Příkaz nejde spustit: je příliš dlouhý.\n");
}

TEST_F(CommandLineTest, remembersAHundredCommands) {
    for (int i = 0; i <= 100; ++i)
        enter("cd nowhere " + std::to_string(i));
    enter("cd nowhere 100");
    enter(" \t");
    settle();
    ASSERT_EQ(line.history().size(), 100U);
    EXPECT_EQ(line.history().front(), "cd nowhere 1");
    EXPECT_EQ(line.history().back(), "cd nowhere 100");
    EXPECT_EQ(line.text(), " \t");
    AppModel later(appServices(), home());
    EXPECT_EQ(later.commandLine().history(), line.history());
}

TEST_F(CommandLineTest, cdLeadsThePanel) {
    temp.folder("My docs");
    temp.folder(" lead");
    temp.folder("it's");
    temp.folder("home/inner");
    const std::pair<std::string, std::string> ways[] = {
        {"cd", temp.path("home")},
        {"cd inner", temp.path("home/inner")},
        {"cd ..", temp.path("home")},
        {"cd ~/inner/", temp.path("home/inner")},
        {"cd " + temp.url().path(), temp.url().path()},
        {"cd My docs", temp.path("My docs")},
        {"cd ../'My docs'", temp.path("My docs")},
        {"cd \"../My docs\"  ", temp.path("My docs")},
        {"cd ../My\\ docs", temp.path("My docs")},
        {"cd ../it's", temp.path("it's")},
        {"cd ~", temp.path("home")},
        {"cd  " + temp.url().path(), temp.url().path()},
        {"cd  lead", temp.path(" lead")},
    };
    for (const auto& [command, folder] : ways) {
        enter(command);
        settle();
        EXPECT_EQ(app.activePanel().folder().path(), folder) << command;
        EXPECT_EQ(line.text(), "") << command;
    }
    EXPECT_FALSE(line.lastRun());
    // Other commands may begin with these letters.
    EXPECT_EQ(codeOf("cdx"), 127);
}

TEST_F(CommandLineTest, cdToNoFolderKeepsTheText) {
    temp.file("file", "");
    for (const auto* name : {"file", "missing", "'not there'"}) {
        enter(std::string("cd ") + name);
        settle();
        ASSERT_TRUE(line.failure()) << name;
        EXPECT_THAT(line.failure()->message(), HasSubstr("teď není dostupná"));
        EXPECT_EQ(line.text(), std::string("cd ") + name);
        EXPECT_EQ(app.activePanel().folder().path(), temp.url().path());
        EXPECT_FALSE(app.activePanel().error());
    }
}

TEST_F(CommandLineTest, escapeClosesTheOutputBeforeItUnmarks) {
    temp.file("a", "");
    app.activePanel().refresh();
    settle();
    app.perform(KAction::markAll);
    outputOf("true");
    app.perform(KAction::escape);
    EXPECT_FALSE(line.lastRun());
    EXPECT_FALSE(app.activePanel().markTotals().count == 0);
    app.perform(KAction::escape);
    EXPECT_TRUE(app.activePanel().markTotals().count == 0);
}

} // namespace

} // namespace fennik::app
