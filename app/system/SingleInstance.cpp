#include "app/system/SingleInstance.h"

#include <QTimer>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <poll.h>
#include <string_view>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace fennik::system {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// For whoever waits for a window: what takes longer is taken for hung.
constexpr auto handOverPatience = milliseconds(1500);
constexpr auto guestPatience = std::chrono::seconds(5);
constexpr std::size_t mostBytes = 64 * 1024; // of a message; paths have 4 KiB at most
constexpr int mostWaiting = 8;

// What the two sides say, one after the other. The first one greets, so that a hung one never finds
// a message of somebody who has given up.
constexpr char greeting = 'F';
constexpr char taken = 'T';

std::string variable(const char* name) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr ? value : "";
}

std::string hexOf(std::size_t number) {
    std::string digits;
    for (int i = 0; i < 16; ++i, number /= 16)
        digits.insert(digits.begin(), "0123456789abcdef"[number % 16]);
    return digits;
}

std::string socketPathFor(const std::string& settings) {
    const auto folder = variable("XDG_RUNTIME_DIR");
    if (!folder.starts_with('/'))
        return {};
    const auto wayland = variable("WAYLAND_DISPLAY");
    const auto who = variable("QT_QPA_PLATFORM") + '\n' +
                     (wayland.empty() ? variable("DISPLAY") : wayland) + '\n' + settings;
    return folder + "/fennik-" + hexOf(std::hash<std::string>()(who));
}

/// None: the path is too long for a socket.
std::optional<sockaddr_un> addressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof(address.sun_path))
        return std::nullopt;
    std::ranges::copy(path, address.sun_path);
    return address;
}

const sockaddr* generic(const sockaddr_un& address) {
    return reinterpret_cast<const sockaddr*>(&address); // NOLINT(*-reinterpret-cast)
}

/// The fields of a start, each with its kind before it and a NUL, which no path has, behind it.
std::string messageOf(const SecondStart& start) {
    std::string message;
    const auto add = [&](char kind, const std::string& text) {
        message.append(1, kind).append(text).append(1, '\0');
    };
    if (start.left)
        add('l', *start.left);
    if (start.right)
        add('r', *start.right);
    add('t', start.activationToken);
    return message;
}

std::optional<SecondStart> startFrom(std::string_view message) {
    SecondStart start;
    bool isWhole = false; // the token comes last
    while (!message.empty()) {
        const auto end = message.find('\0');
        if (end == std::string_view::npos || end == 0)
            return std::nullopt;
        const std::string text(message.substr(1, end - 1));
        const bool isPath = text.starts_with('/');
        if (message.front() == 'l' && isPath)
            start.left = text;
        else if (message.front() == 'r' && isPath)
            start.right = text;
        else if (message.front() == 't')
            start.activationToken = text;
        else
            return std::nullopt;
        isWhole = message.front() == 't';
        message.remove_prefix(end + 1);
    }
    return isWhole ? std::optional(std::move(start)) : std::nullopt;
}

/// One byte that has to come before `deadline`.
bool hears(int socket, char byte, steady_clock::time_point deadline) {
    while (true) {
        pollfd waited{.fd = socket, .events = POLLIN, .revents = 0};
        const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
        const int ready = poll(&waited, 1, int(std::max(left, milliseconds(0)).count()));
        if (ready < 0 && errno == EINTR)
            continue;
        char heard = 0;
        return ready > 0 && recv(socket, &heard, 1, MSG_DONTWAIT) == 1 && heard == byte;
    }
}

bool says(int socket, std::string_view bytes) {
    // Whatever is said fits into the buffer of a socket that nobody has said anything to.
    return send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT) ==
           ssize_t(bytes.size());
}

/// Whether who runs there has taken the message.
bool tell(const sockaddr_un& address, const std::string& message,
          steady_clock::time_point deadline) {
    const int guest = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (guest < 0)
        return false;
    const bool isTaken = connect(guest, generic(address), sizeof(address)) == 0 &&
                         hears(guest, greeting, deadline) && says(guest, message) &&
                         shutdown(guest, SHUT_WR) == 0 && hears(guest, taken, deadline);
    close(guest);
    return isTaken;
}

} // namespace

/// A second start that says what it wants.
class SingleInstance::Guest final : public QObject {
public:
    Guest(int socket, SingleInstance& host)
        : QObject(&host), socket_(socket), host_(host), notifier_(socket, QSocketNotifier::Read) {
        connect(&notifier_, &QSocketNotifier::activated, this, &Guest::listen);
        QTimer::singleShot(guestPatience, this, &QObject::deleteLater);
        says(socket_, {&greeting, 1});
    }
    ~Guest() override {
        notifier_.setEnabled(false);
        ::close(socket_);
    }

private:
    void listen() {
        std::array<char, 4096> bytes{};
        const auto count = recv(socket_, bytes.data(), bytes.size(), MSG_DONTWAIT);
        if (count < 0 && (errno == EAGAIN || errno == EINTR))
            return;
        if (count > 0 && message_.size() < mostBytes) {
            message_.append(bytes.data(), std::size_t(count));
            return;
        }
        notifier_.setEnabled(false);
        deleteLater();
        const auto start = count == 0 ? startFrom(message_) : std::nullopt;
        // Who has given up by now is going to show a window of its own.
        if (start && says(socket_, {&taken, 1}))
            emit host_.received(*start);
    }

    int socket_;
    SingleInstance& host_;
    QSocketNotifier notifier_;
    std::string message_;
};

SingleInstance::SingleInstance(const std::string& settings) : socketPath_(socketPathFor(settings)) {
    if (!addressOf(socketPath_))
        socketPath_.clear();
}

SingleInstance::~SingleInstance() {
    close();
}

void SingleInstance::close() {
    notifier_.reset();
    if (listening_ >= 0) {
        unlink(socketPath_.c_str());
        ::close(std::exchange(listening_, -1));
    }
    if (lock_ >= 0)
        ::close(std::exchange(lock_, -1));
}

bool SingleInstance::lock() {
    const auto path = socketPath_ + ".lock";
    lock_ = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (lock_ < 0)
        return false;
    if (flock(lock_, LOCK_EX | LOCK_NB) == 0)
        return true;
    ::close(std::exchange(lock_, -1));
    return false;
}

bool SingleInstance::handOver(const SecondStart& start) {
    const auto address = addressOf(socketPath_);
    if (socketPath_.empty() || !address)
        return false;
    const auto message = messageOf(start);
    const auto deadline = steady_clock::now() + handOverPatience;
    do {
        if (lock())
            return false;
        if (tell(*address, message, deadline))
            return true;
        // The first one may just be starting, or ending.
        constexpr milliseconds pause(20);
        std::this_thread::sleep_for(pause);
    } while (steady_clock::now() < deadline);
    return false;
}

void SingleInstance::listen() {
    const auto address = addressOf(socketPath_);
    if (lock_ < 0 || !address)
        return;
    unlink(socketPath_.c_str()); // one that was killed has left it
    listening_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (listening_ < 0)
        return;
    if (bind(listening_, generic(*address), sizeof(*address)) != 0 ||
        ::listen(listening_, mostWaiting) != 0) {
        ::close(std::exchange(listening_, -1));
        return;
    }
    notifier_ = std::make_unique<QSocketNotifier>(listening_, QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &SingleInstance::accept);
}

void SingleInstance::accept() {
    const int guest = accept4(listening_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (guest < 0)
        return;
    ucred peer{};
    socklen_t size = sizeof(peer);
    if (getsockopt(guest, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0 || peer.uid != getuid())
        ::close(guest);
    else
        new Guest(guest, *this); // goes by itself
}

} // namespace fennik::system
