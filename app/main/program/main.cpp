#include "app/main/Options.h"
#include "app/main/Screenshot.h"
#include "app/main/Session.h"
#include "app/main/Tour.h"
#include "app/system/DisplayProbe.h"
#include "app/system/SettingsFile.h"
#include "app/system/SingleInstance.h"
#include "app/system/TerminationSignals.h"
#include "app/ui/WindowStyle.h"
#include "core/archives/helper/ArchiveHelper.h"
#include "core/platform/UserFolders.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QTranslator>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <span>

namespace {

using namespace fennik;
using app::Options;

constexpr int exitFailure = 1;
constexpr int exitUsage = 2;

/// A sentence where no window can be opened.
std::optional<std::string> displayFault() {
    switch (system::probeDisplay()) {
    case system::Display::available:
        return std::nullopt;
    case system::Display::none:
        return "Není tu displej, na kterém by se dalo otevřít okno. Obrázek okna nakreslí "
               "--screenshot.";
    case system::Display::unreachable:
        break;
    }
    return "K displeji se nejde připojit. Obrázek okna nakreslí --screenshot.";
}

/// The toolkit's own remarks say nothing to the user; what ends the program does.
void passToolkitMessage(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::cerr << message.toStdString() << '\n';
}

/// What the window that runs already needs to know of this start.
system::SecondStart secondStart(const Options& options) {
    return {.left = app::absolutePath(options.left),
            .right = app::absolutePath(options.right),
            .activationToken = qEnvironmentVariable("XDG_ACTIVATION_TOKEN").toStdString()};
}

int runWindow(const Options& options, system::SingleInstance& instance) {
    app::Session session(options);
    int code = 0;
    if (options.task == Options::Task::screenshot) {
        code = app::takeScreenshot(session, options.screenshotFile);
    } else {
        const system::TerminationSignals termination;
        QObject::connect(&termination, &system::TerminationSignals::received, qApp, [&session] {
            session.window().closeAnyway();
            QApplication::quit(); // the window may not have been shown yet
        });
        QObject::connect(&session.window(), &ui::MainWindow::firstPainted, &session.window(),
                         &ui::MainWindow::welcome);
        QObject::connect(&instance, &system::SingleInstance::received, qApp,
                         [&session](const auto& start) { session.takeSecondStart(start); });
        // Tabs of a second start come after those of the last run.
        session.start([&instance] { instance.listen(); });
        code = QApplication::exec();
        // What follows may take a while, and nobody looks at a window then.
        instance.close();
    }
    if (session.shutDown() == ShutDown::threadsLeft)
        std::_Exit(code);
    return code;
}

} // namespace

int main(int argumentCount, char** arguments) {
    // Where a limit forbids a file to grow, the write that fails is told like any other.
    std::signal(SIGXFSZ, SIG_IGN);
    // Whoever starts this may ignore how processes end; here it is waited for.
    std::signal(SIGCHLD, SIG_DFL);
    const auto texts = std::span<const char* const>(arguments, std::size_t(argumentCount))
                           .subspan(argumentCount > 0 ? 1 : 0);
    if (texts.size() == 1 && texts.front() == archiveHelperOption)
        if (const int code = runArchiveHelper(); code != HelperExit::noHelper)
            return code;
    const auto options = app::readOptions(texts);
    if (!options) {
        std::cerr << options.error() << '\n';
        return exitUsage;
    }
    if (options->task == Options::Task::help) {
        std::cout << app::helpText();
        return 0;
    }
    if (options->task == Options::Task::version) {
        std::cout << "Fennik " FENNIK_VERSION "\n";
        return 0;
    }
    if (options->task != Options::Task::window) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    } else if (const auto fault = displayFault()) {
        std::cerr << *fault << '\n';
        return exitFailure;
    }
    system::SingleInstance instance(system::SettingsFile::configFolder(UserFolders::home().path()));
    if (options->task == Options::Task::window && instance.handOver(secondStart(*options)))
        return 0;
    qInstallMessageHandler(passToolkitMessage);
    QApplication::setStyle(new ui::WindowStyle);
    QApplication::setApplicationName(QStringLiteral("Fennik"));
    QApplication::setApplicationVersion(QStringLiteral(FENNIK_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("fennik"));
    int toolkitArguments = 1; // the rest are ours
    const QApplication application(toolkitArguments, arguments);
    QTranslator toolkitTexts; // of the menus of text fields
    if (toolkitTexts.load(QStringLiteral("qtbase_cs"),
                          QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&toolkitTexts);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/fennik.svg")));
    if (options->task == Options::Task::tour)
        return app::runTour(*options);
    return runWindow(*options, instance);
}
