#include "app/system/DesktopWorkspace.h"

#include "app/system/Applications.h"
#include "app/system/FileExamination.h"
#include "app/system/SessionBus.h"
#include "app/system/Terminals.h"
#include "core/base/CzechText.h"
#include "core/base/PathText.h"
#include "core/platform/DetachedProgram.h"
#include "core/platform/UserFolders.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QStringList>
#include <QWindow>

#include <chrono>
#include <utility>

namespace fennik::system {

namespace {

using Result = std::expected<void, std::string>;

/// A program that cannot do what it was started for says so within this.
constexpr auto startPatience = std::chrono::milliseconds(1000);
/// A file browser may have to be started first.
constexpr int revealPatience = 10'000; // ms

std::string sentence(const FileUrl& file, std::string_view rest) {
    return quoted(file.lastComponent()) + " " + std::string(rest);
}

/// Empty, or why it does not run, as the end of a sentence.
std::string start(const std::vector<std::string>& command, const std::string& folder) {
    const auto program = DetachedProgram::find(command.front());
    if (!program)
        return quoted(command.front()) + " v systému není.";
    const auto ending = DetachedProgram::start(
        {.program = *program, .arguments = {command.begin() + 1, command.end()}, .folder = folder},
        startPatience);
    if (!ending)
        return ending.error().reason() + ".";
    if (!*ending || (*ending)->exitCode == 0)
        return {};
    const auto code = (*ending)->exitCode;
    return quoted(FileUrl(*program).lastComponent()) +
           (code ? " hned skončil s kódem " + std::to_string(*code) + "."
                 : " hned ukončil signál " + std::to_string((*ending)->signal) + ".");
}

/// Where an application works: not in the folder of the file, whose disk somebody may want to take
/// out meanwhile.
std::string workingFolder(const DesktopEntry& entry) {
    return entry.folder.starts_with('/') ? entry.folder : UserFolders::home().path();
}

/// Empty, or why it does not run, as the end of a sentence.
std::string start(const DesktopEntry& entry, const FileUrl& file) {
    auto command = entry.command(file.path());
    const auto folder = workingFolder(entry);
    if (entry.inTerminal && !command.empty()) {
        auto inTerminal = Terminals::opening(folder, command);
        if (!inTerminal)
            return "potřebuje terminál a žádný tu není.";
        command = std::move(*inTerminal);
    }
    return command.empty() ? "jeho příkaz nedává smysl." : start(command, folder);
}

Result openWith(const DesktopEntry& entry, const FileUrl& file) {
    const auto failure = start(entry, file);
    if (failure.empty())
        return {};
    return std::unexpected(
        sentence(file, "nejde otevřít programem " + quoted(entry.name) + ": " + failure));
}

Result openExamined(const FileUrl& file) {
    const auto examined = FileExamination::of(file);
    if (!examined)
        return std::unexpected(examined.error());
    switch (examined->runs()) {
    case FileExamination::Runs::asProgram:
        return std::unexpected(sentence(file, "je program a ten Fennik nespouští."));
    case FileExamination::Runs::asScript:
        return std::unexpected(sentence(file, "je skript a ten Fennik nespouští, jen upravuje."));
    case FileExamination::Runs::no:
        break;
    }
    const auto entry = Applications().defaultFor(examined->types());
    if (!entry)
        return std::unexpected(sentence(file, "nemá v systému program, který by ho otevřel."));
    return openWith(*entry, file);
}

Result editExamined(const FileUrl& file, const std::string& application) {
    if (const auto examined = FileExamination::of(file); !examined)
        return std::unexpected(examined.error());
    const Applications applications;
    if (application.empty()) {
        const auto entry = applications.defaultFor({"text/plain"});
        if (!entry)
            return std::unexpected("V systému není žádný textový editor.");
        return openWith(*entry, file);
    }
    if (const auto entry = applications.named(application))
        return openWith(*entry, file);
    auto command = commandWords(application);
    // A path may have blanks in it.
    if (DetachedProgram::find(application))
        command = {application};
    if (!command || command->empty() || !DetachedProgram::find(command->front()))
        return std::unexpected("Editor " + quoted(application) +
                               " v systému není, jiný jde vybrat v nastavení.");
    command->push_back(file.path());
    const auto failure = start(*command, UserFolders::home().path());
    if (failure.empty())
        return {};
    return std::unexpected(sentence(file, "nejde upravit: " + failure));
}

Result openTerminalIn(const FileUrl& folder) {
    const auto command = Terminals::opening(folder.path());
    if (!command)
        return std::unexpected("Terminál nenalezen.");
    const auto failure = start(*command, folder.path());
    if (failure.empty())
        return {};
    return std::unexpected("Terminál nejde otevřít: " + failure);
}

QString urlOf(const FileUrl& item) {
    return QString::fromStdString("file://" + percentEncoded(item.path()));
}

} // namespace

DesktopWorkspace::DesktopWorkspace(DiskExecutor& disk, Executor& main)
    : disk_(disk), main_(main), elsewhere_(disk), sleepGuard_(elsewhere_, main) {
    connect(&notifier_, &Notifier::clicked, this, &DesktopWorkspace::windowWanted);
    // Who looks at the window needs no notification of what stands there.
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, &notifier_, [this](QWindow* window) {
        if (window != nullptr)
            notifier_.withdraw();
    });
}

template <class Work>
void DesktopWorkspace::onDisk(const FileUrl& place, Work work, Done done) {
    runThen(disk_, main_, place.path(), life_, std::move(work),
            [done = std::move(done)](Result result) mutable { done(std::move(result)); });
}

void DesktopWorkspace::open(const FileUrl& file, Done done) {
    onDisk(file, [file] { return openExamined(file); }, std::move(done));
}

void DesktopWorkspace::edit(const FileUrl& file, const std::string& application, Done done) {
    onDisk(file, [file, application] { return editExamined(file, application); }, std::move(done));
}

void DesktopWorkspace::openTerminal(const Terminal& terminal, Done done) {
    onDisk(
        terminal.folder, [folder = terminal.folder] { return openTerminalIn(folder); },
        std::move(done));
}

void DesktopWorkspace::reveal(const std::vector<FileUrl>& items, Done done) {
    const auto folder = items.front().parent();
    auto bus = sessionBus();
    if (!bus)
        return openFolder(folder, std::move(done));
    QStringList urls;
    for (const auto& item : items)
        urls << urlOf(item);
    const auto service = QStringLiteral("org.freedesktop.FileManager1");
    auto message =
        QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/FileManager1"),
                                       service, QStringLiteral("ShowItems"));
    message << urls << QString();
    auto* watcher = new QDBusPendingCallWatcher(bus->asyncCall(message, revealPatience), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, watcher, folder, done = std::make_shared<Done>(std::move(done))] {
                watcher->deleteLater();
                const QDBusPendingReply<> reply = *watcher;
                if (reply.isError())
                    openFolder(folder, std::move(*done));
                else
                    (*done)({});
            });
}

void DesktopWorkspace::openFolder(const FileUrl& folder, Done done) {
    onDisk(
        folder,
        [folder]() -> Result {
            const auto entry = Applications().defaultFor({"inode/directory"});
            if (!entry)
                return std::unexpected("V systému není jiný správce souborů.");
            return openWith(*entry, folder);
        },
        std::move(done));
}

void DesktopWorkspace::notify(const Notification& notification) {
    if (QGuiApplication::focusWindow() == nullptr)
        notifier_.show(QString::fromStdString(notification.title),
                       QString::fromStdString(notification.text));
}

void DesktopWorkspace::setSleep(Sleep sleep) {
    if (sleep == Sleep::heldOff)
        sleepGuard_.hold();
    else
        sleepGuard_.release();
}

} // namespace fennik::system
