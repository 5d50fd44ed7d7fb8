#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace fennik::system {

/// What a second start asks of the one that runs.
struct SecondStart {
    std::optional<std::string> left = {};
    std::optional<std::string> right = {}; ///< absolute paths, in bytes
    std::string activationToken = {};      ///< lets the window come to the front; may be empty

    friend bool operator==(const SecondStart&, const SecondStart&) = default;
};

/// One window for each user, display and place of settings. The first start holds a lock, which the
/// system takes back however that start ends, and listens at a socket beside it, in the user's
/// runtime folder. Without such a folder each start is the first one. Main thread only.
class SingleInstance final : public QObject {
    Q_OBJECT

public:
    /// `settings` is the folder where they are kept.
    explicit SingleInstance(const std::string& settings);
    ~SingleInstance() override;

    /// Whether the start that runs has taken `start` over, and this one can end. One that does not
    /// answer within a second or two is left alone. Otherwise this is the first start, where none
    /// runs; needs no application object.
    bool handOver(const SecondStart& start);
    /// Emits `received` from now on, where this is the first start.
    void listen();
    /// The next start is a first one again.
    void close();

signals:
    void received(const fennik::system::SecondStart& start);

private:
    class Guest;

    bool lock();
    void accept();

    std::string socketPath_; ///< empty: there is no place for it
    int lock_ = -1;
    int listening_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace fennik::system
