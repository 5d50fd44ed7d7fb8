#include "app/system/TerminationSignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace fennik::system {

namespace {

constexpr std::array handled{SIGTERM, SIGHUP, SIGINT};

/// Nothing but a write is safe in a handler; the other end is read in the event loop.
std::array<int, 2> pipeEnds{-1, -1};

void tell(int) {
    const int error = errno;
    [[maybe_unused]] const auto written = write(pipeEnds[1], "", 1);
    errno = error;
}

void handleAll(void (*handler)(int)) {
    struct sigaction action{};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : handled)
        sigaction(signal, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals() {
    if (pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return; // the process then ends at once, as any other does
    auto* notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        emit received();
    });
    handleAll(tell);
}

TerminationSignals::~TerminationSignals() {
    if (pipeEnds[0] < 0)
        return;
    handleAll(SIG_DFL);
    for (const int end : pipeEnds)
        close(end);
}

} // namespace fennik::system
