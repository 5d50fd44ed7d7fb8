#include "app/system/DesktopWorkspace.h"

#include "app/system/FileExamination.h"
#include "tests/support/DiskTree.h"
#include "tests/support/ManualExecutor.h"
#include "tests/support/TempFolder.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QSignalSpy>
#include <QTest>

#include <array>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <map>
#include <poll.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace fennik::test {

namespace {

using system::DesktopWorkspace;
using system::FileExamination;
using testing::ElementsAre;
using Sleep = app::Workspace::Sleep;

/// Variables of the process, which are as before at the end.
class Variables {
public:
    Variables() = default;
    Variables(const std::string& name, const std::string& value) { set(name, value); }
    Variables(const Variables&) = delete;
    Variables& operator=(const Variables&) = delete;
    ~Variables() {
        for (const auto& [name, value] : before_) {
            if (value.isNull())
                qunsetenv(name.c_str());
            else
                qputenv(name.c_str(), value);
        }
    }
    void set(const std::string& name, const std::string& value) {
        before_.try_emplace(name, qgetenv(name.c_str()));
        qputenv(name.c_str(), QByteArray::fromStdString(value));
    }

private:
    std::map<std::string, QByteArray> before_;
};

/// A service of the desktop that notes what it is asked and answers what it is told.
class Service final : public QDBusVirtualObject {
public:
    using Answer = std::function<QVariantList(const QDBusMessage&)>;

    Service(const QString& name, const QString& object, Answer answer)
        : name_(name),
          object_(object),
          answer_(std::move(answer)),
          bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)) {
        bus_.registerVirtualObject(object, this);
        bus_.registerService(name);
    }
    ~Service() override {
        bus_.unregisterService(name_);
        bus_.unregisterObject(object_);
        QDBusConnection::disconnectFromBus(name_);
    }

    void tell(const QString& signal, const QVariantList& arguments) {
        auto message = QDBusMessage::createSignal(object_, name_, signal);
        message.setArguments(arguments);
        bus_.send(message);
    }
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        asked.push_back(message);
        connection.send(message.createReply(answer_(message)));
        return true;
    }
    std::vector<std::string> members() const {
        std::vector<std::string> names;
        for (const auto& message : asked)
            names.push_back(message.member().toStdString());
        return names;
    }

    std::vector<QDBusMessage> asked;

private:
    QString name_;
    QString object_;
    Answer answer_;
    QDBusConnection bus_;
};

/// A desktop of files: its applications are scripts that note how they were started.
class WorkspaceTest : public testing::Test {
protected:
    WorkspaceTest() {
        for (const auto* folder : {"bin", "data/applications", "config", "none", "home"})
            temp.folder(folder);
        variables.set("HOME", temp.path("home"));
        variables.set("PATH", temp.path("bin"));
        variables.set("XDG_DATA_HOME", temp.path("data"));
        variables.set("XDG_CONFIG_HOME", temp.path("config"));
        variables.set("XDG_CONFIG_DIRS", temp.path("none"));
        variables.set("XDG_CURRENT_DESKTOP", "");
        variables.set("TERMINAL", "");
    }

    void program(const std::string& name, const std::string& script) {
        temp.file("bin/" + name, "#!/bin/sh\n" + script + "\n");
        std::filesystem::permissions(temp.path("bin/" + name), std::filesystem::perms::owner_all);
    }
    /// A program that notes its name, its folder and its words.
    void recorder(const std::string& name) {
        program(name, "{ printf '%s in %s:' \"${0##*/}\" \"$PWD\"; for word; do printf ' <%s>' "
                      "\"$word\"; done; } >'" +
                          temp.path("record") + "'");
    }
    void application(const std::string& name, const std::string& lines) {
        recorder(name);
        temp.file("data/applications/" + name + ".desktop",
                  "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=" + name + " %f\n" +
                      lines);
    }
    void choose(const std::string& lines) {
        temp.file("config/mimeapps.list", "[Default Applications]\n" + lines);
    }
    /// How the program was started that the last call has led to.
    std::string record() {
        auto text = contentOf(temp.path("record"));
        std::filesystem::remove(temp.path("record"));
        return text;
    }
    std::string inHome(const std::string& name, const std::string& words) {
        return name + " in " + temp.path("home") + ": " + words;
    }

    app::Workspace::Done take() {
        failure = "not answered";
        return [this](const std::expected<void, std::string>& result) {
            failure = result ? "" : result.error();
        };
    }
    std::string settled() {
        while (!disk.isIdle() || !main.isIdle()) {
            disk.runAll();
            main.runAll();
        }
        return failure;
    }
    std::string open(const std::string& path) {
        workspace.open(FileUrl(path), take());
        return settled();
    }
    std::string edit(const std::string& path, const std::string& application) {
        workspace.edit(FileUrl(path), application, take());
        return settled();
    }
    std::string openTerminal(const std::string& folder) {
        workspace.openTerminal({.folder = FileUrl(folder)}, take());
        return settled();
    }
    template <class Act>
    void withoutBus(Act act) {
        const Variables restored("DBUS_SESSION_BUS_ADDRESS", "");
        act();
    }
    /// As `settled`, where it takes somebody else to answer.
    std::string answered() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return settled() != "not answered"; }));
        return failure;
    }

    TempFolder temp;
    Variables variables;
    ManualExecutor disk;
    ManualExecutor main;
    DesktopWorkspace workspace{disk, main};
    std::string failure;
};

} // namespace

// Opening

TEST_F(WorkspaceTest, opensAFileWithWhatTheUserAndElseTheDesktopHasForItsType) {
    temp.file("řeč \xff.html", "<html></html>");
    const auto file = temp.path("řeč \xff.html");
    EXPECT_EQ(open(file), "„řeč \uFFFD.html“ nemá v systému program, který by ho otevřel.");
    application("editor", "MimeType=text/plain;");
    EXPECT_EQ(open(file), "");
    EXPECT_EQ(record(), inHome("editor", "<" + file + ">")) << "HTML is text too";
    application("browser", "MimeType=image/png;text/html;");
    EXPECT_EQ(open(file), "");
    EXPECT_EQ(record(), inHome("browser", "<" + file + ">"));
    application("chosen", "");
    application("removed", "TryExec=missing\n");
    choose("text/html=gone.desktop;removed.desktop;chosen.desktop;browser.desktop\n");
    EXPECT_EQ(open(file), "");
    EXPECT_EQ(record(), inHome("chosen", "<" + file + ">"));

    variables.set("XDG_CURRENT_DESKTOP", "Test:GNOME");
    temp.file("config/test-mimeapps.list", "[Default Applications]\ntext/html=editor.desktop\n");
    EXPECT_EQ(open(file), "");
    EXPECT_EQ(record(), inHome("editor", "<" + file + ">"));
}

TEST_F(WorkspaceTest, givesAnApplicationWhatItsCommandAsksFor) {
    temp.file("a b%25.txt", "text");
    const auto file = temp.path("a b%25.txt");
    const auto expectWords = [&](const std::string& exec, const std::string& words) {
        application("app", "MimeType=text/plain\nExec=" + exec + "\nName[cs]=Čtečka\nIcon=ikona\n");
        EXPECT_EQ(open(file), "") << exec;
        EXPECT_EQ(record(), inHome("app", words)) << exec;
    };
    const auto url = "file://" + temp.url().path() + "/a%20b%2525.txt";
    expectWords("app", "<" + file + ">");
    expectWords("app %U --to=%f 50%%", "<" + url + "> <--to=" + file + "> <50%>");
    expectWords("app %i %c %d \"\" %k %F", "<--icon> <ikona> <Čtečka> <> <" +
                                               temp.path("data/applications/app.desktop") + "> <" +
                                               file + ">");
    expectWords(R"("app" "a \\"b\\" \\$HOME \\\\" %f)", R"(<a "b" $HOME \> <)" + file + ">");

    application("app", "MimeType=text/plain\nExec=app \"no end\n");
    EXPECT_EQ(open(file), "„a b%25.txt“ nemá v systému program, který by ho otevřel.");
    application("app", "MimeType=text/plain\nTerminal=true\n");
    EXPECT_EQ(open(file), "„a b%25.txt“ nejde otevřít programem „app“: potřebuje terminál a žádný "
                          "tu není.");
    recorder("xdg-terminal-exec");
    EXPECT_EQ(open(file), "");
    EXPECT_EQ(record(), inHome("xdg-terminal-exec", "<app> <" + file + ">"));
    program("app", "exit 3");
    application("broken", "");
    program("broken", "exit 3");
    choose("text/plain=broken.desktop\n");
    EXPECT_EQ(open(file), "„a b%25.txt“ nejde otevřít programem „broken“: „broken“ hned skončil s "
                          "kódem 3.");
}

TEST_F(WorkspaceTest, neverRunsAProgramOrAScript) {
    // An application that would run what it is given.
    application("runner", "MimeType=text/plain;application/x-shellscript;application/x-executable;"
                          "application/x-desktop;application/x-ms-dos-executable;"
                          "application/x-sharedlib;text/x-python;application/x-java-archive;");
    temp.folder("links");
    constexpr mode_t plain = 0644;
    constexpr mode_t executable = 0755;
    const std::string elf("\x7f"
                          "ELF\x02\x01\x01\0\0\0\0\0\0\0\0\0\x02\0\x3e\0",
                          20);
    const std::string dos("MZ\x90\0\x03\0\0\0", 8);
    const std::string isProgram = " je program a ten Fennik nespouští.";
    const std::string isScript = " je skript a ten Fennik nespouští, jen upravuje.";
    struct Case {
        std::string name;
        std::string content;
        mode_t mode;
        std::string expected;
    };
    const std::vector<Case> cases{
        {"tool", elf, executable, isProgram},
        {"tool.txt", elf, executable, isProgram},
        {"copied", elf, plain, isProgram},
        {"a.exe", dos, plain, isProgram},
        {"photo.txt", dos, plain, isProgram},
        {"a.desktop", "[Desktop Entry]\nExec=x\n", plain, isProgram},
        {"a.jar", "PK\x03\x04", plain, isProgram},
        {"a.sh", "#!/bin/sh\n", plain, isScript},
        {"configure", "#! /bin/sh\n", executable, isScript},
        {"bare.sh", "echo\n", executable, isScript},
        {"a.py", "import os\n", executable, isScript},
        {"module.py", "import os\n", plain, ""},
        {"MZdy.txt", "MZdy 2026\n", plain, ""},
        // Some volumes give all files the right to be run.
        {"notes.txt", "notes\n", executable, ""},
    };
    for (const auto& [name, content, mode, expected] : cases) {
        temp.file(name, content);
        chmod(temp.path(name).c_str(), mode);
        temp.link("links/" + name, temp.path(name));
        EXPECT_EQ(open(temp.path(name)), expected.empty() ? "" : "„" + name + "“" + expected);
        EXPECT_EQ(record().empty(), !expected.empty()) << name;
        EXPECT_EQ(open(temp.path("links/" + name)), open(temp.path(name)));
        record();
    }
}

TEST_F(WorkspaceTest, saysWhatCannotBeReached) {
    application("editor", "MimeType=text/plain;");
    temp.link("broken", temp.path("gone"));
    temp.link("circle", temp.path("circle"));
    mkfifo(temp.path("pipe").c_str(), 0600);
    temp.file("secret.txt", "x");
    chmod(temp.path("secret.txt").c_str(), 0);
    EXPECT_EQ(open(temp.path("gone")), "„gone“ nejde otevřít: už neexistuje.");
    EXPECT_EQ(open(temp.path("broken")), "„broken“ nejde otevřít: cíl odkazu neexistuje.");
    EXPECT_EQ(open(temp.path("circle")), "„circle“ nejde otevřít: cíl odkazu neexistuje.");
    EXPECT_EQ(open(temp.path("pipe")), "„pipe“ nejde otevřít: není to obyčejný soubor.");
    EXPECT_EQ(edit(temp.path("gone"), ""), "„gone“ nejde otevřít: už neexistuje.");
    EXPECT_TRUE(asOrdinaryUser([&] {
        const auto examined = FileExamination::of(FileUrl(temp.path("secret.txt")));
        return !examined && examined.error().starts_with("„secret.txt“ nejde otevřít: nemáte");
    }));
}

TEST_F(WorkspaceTest, editsWithTheApplicationThatIsNamed) {
    temp.file("a.html", "<html></html>");
    const auto file = temp.path("a.html");
    EXPECT_EQ(edit(file, ""), "V systému není žádný textový editor.");
    application("browser", "MimeType=text/html;");
    application("org.editor", "MimeType=text/plain;");
    recorder("plain tool");
    const auto expectStarted = [&](const std::string& named, const std::string& words) {
        EXPECT_EQ(edit(file, named), "") << named;
        EXPECT_EQ(record(), words);
    };
    expectStarted("", inHome("org.editor", "<" + file + ">"));
    expectStarted("browser", inHome("browser", "<" + file + ">"));
    expectStarted("browser.desktop", inHome("browser", "<" + file + ">"));
    std::filesystem::remove(temp.path("data/applications/browser.desktop"));
    expectStarted("browser --new \"a b\"", inHome("browser", "<--new> <a b> <" + file + ">"));
    expectStarted(temp.path("bin/plain tool"), inHome("plain tool", "<" + file + ">"));
    EXPECT_EQ(edit(file, "missing"),
              "Editor „missing“ v systému není, jiný jde vybrat v nastavení.");
    program("broken", "kill -9 $$");
    EXPECT_EQ(edit(file, "broken"), "„a.html“ nejde upravit: „broken“ hned ukončil signál 9.");
}

// Terminals

TEST_F(WorkspaceTest, opensTheFirstTerminalThatThereIs) {
    temp.folder("it's \xff");
    const auto folder = temp.path("it's \xff");
    EXPECT_EQ(openTerminal(folder), "Terminál nenalezen.");
    const auto expectStarted = [&](const std::string& words) {
        EXPECT_EQ(openTerminal(folder), "");
        EXPECT_EQ(record(), words);
    };
    recorder("xterm");
    expectStarted("xterm in " + folder + ":");
    recorder("gnome-terminal");
    expectStarted("gnome-terminal in " + folder + ": <--working-directory=" + folder + ">");
    recorder("mine");
    variables.set("TERMINAL", temp.path("bin/mine"));
    expectStarted("mine in " + folder + ":");
    variables.set("TERMINAL", "missing");
    expectStarted("gnome-terminal in " + folder + ": <--working-directory=" + folder + ">");
    recorder("xdg-terminal-exec");
    expectStarted("xdg-terminal-exec in " + folder + ":");
    EXPECT_THAT(openTerminal(temp.path("gone")), testing::StartsWith("Terminál nejde otevřít: "));
    program("xdg-terminal-exec", "exit 1");
    EXPECT_EQ(openTerminal(folder),
              "Terminál nejde otevřít: „xdg-terminal-exec“ hned skončil s kódem 1.");
}

// Other programs on the bus

TEST_F(WorkspaceTest, revealsItemsInTheFileBrowserOfTheDesktop) {
    const std::vector items{FileUrl(temp.path("a b")), FileUrl(temp.path("\xff"))};
    withoutBus([&] {
        workspace.reveal(items, take());
        EXPECT_EQ(answered(), "V systému není jiný správce souborů.");
    });
    application("browser", "MimeType=inode/directory;");
    withoutBus([&] {
        workspace.reveal(items, take());
        EXPECT_EQ(answered(), "");
    });
    EXPECT_EQ(record(), inHome("browser", "<" + temp.url().path() + ">"));

    Service browser("org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                    [](const QDBusMessage&) { return QVariantList(); });
    workspace.reveal(items, take());
    EXPECT_EQ(answered(), "");
    EXPECT_EQ(record(), "");
    ASSERT_THAT(browser.members(), ElementsAre("ShowItems"));
    const auto folder = "file://" + QString::fromStdString(temp.url().path());
    EXPECT_EQ(browser.asked.front().arguments().first().toStringList(),
              QStringList({folder + "/a%20b", folder + "/%FF"}));
}

TEST_F(WorkspaceTest, aClickOnANotificationBringsTheWindow) {
    withoutBus([&] { workspace.notify({.title = "Nobody", .text = "shows it"}); });
    const QString name = "org.freedesktop.Notifications";
    Service server(name, "/org/freedesktop/Notifications",
                   [](const QDBusMessage&) { return QVariantList{7U}; });
    QSignalSpy wanted(&workspace, &DesktopWorkspace::windowWanted);
    workspace.notify({.title = "Kopírování „a“", .text = "Hotovo <b>"});
    ASSERT_TRUE(QTest::qWaitFor([&] { return server.asked.size() == 1; }));
    EXPECT_EQ(server.asked[0].arguments().mid(0, 5),
              (QVariantList{"Fennik", 0U, "fennik", "Kopírování „a“", "Hotovo &lt;b&gt;"}));
    // The next one takes its place, once its number is known.
    ASSERT_TRUE(QTest::qWaitFor([&] {
        workspace.notify({.title = "Další", .text = ""});
        QTest::qWait(10);
        return server.asked.back().arguments().at(1) == QVariant(7U);
    }));
    server.tell("ActivationToken", {8U, "foreign"});
    server.tell("ActionInvoked", {8U, "default"});
    server.tell("ActivationToken", {7U, "token"});
    server.tell("ActionInvoked", {7U, "default"});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !wanted.empty(); }));
    EXPECT_EQ(wanted.size(), 1);
    EXPECT_EQ(wanted.first().first(), "token");
}

TEST_F(WorkspaceTest, holdsOffSleepAsLongAsItIsTold) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const auto isHeld = [&] {
        pollfd end{.fd = ends[0], .events = POLLIN, .revents = 0};
        return poll(&end, 1, 0) == 0;
    };
    {
        Service login(
            "org.freedesktop.login1", "/org/freedesktop/login1", [&](const QDBusMessage&) {
                // The only writer is then the one that goes over the bus.
                QVariantList answer{QVariant::fromValue(QDBusUnixFileDescriptor(ends[1]))};
                close(ends[1]);
                return answer;
            });
        workspace.setSleep(Sleep::heldOff);
        ASSERT_TRUE(QTest::qWaitFor([&] {
            settled();
            return login.asked.size() == 1;
        }));
        EXPECT_EQ(login.asked[0].arguments().first(), "sleep");
        EXPECT_EQ(login.asked[0].arguments().last(), "block");
        login.asked.clear();
        QTest::qWait(50);
        EXPECT_TRUE(isHeld());
        workspace.setSleep(Sleep::allowed);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !isHeld(); }));
    }
    close(ends[0]);

    Service desktop("org.freedesktop.PowerManagement", "/org/freedesktop/PowerManagement/Inhibit",
                    [](const QDBusMessage&) { return QVariantList{5U}; });
    workspace.setSleep(Sleep::heldOff);
    workspace.setSleep(Sleep::allowed); // before the answer
    ASSERT_TRUE(QTest::qWaitFor([&] {
        settled();
        return desktop.asked.size() == 2;
    }));
    EXPECT_THAT(desktop.members(), ElementsAre("Inhibit", "UnInhibit"));
    EXPECT_EQ(desktop.asked[1].arguments().first(), 5U);
}

} // namespace fennik::test
