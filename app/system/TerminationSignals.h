#pragma once

#include <QObject>

namespace fennik::system {

/// Turns the system's request to end (SIGTERM, SIGHUP, SIGINT) into a signal on the main thread, so
/// that the program ends as if its window had been closed. One per process, at the most.
class TerminationSignals final : public QObject {
    Q_OBJECT

public:
    TerminationSignals();
    ~TerminationSignals() override;

signals:
    void received();
};

} // namespace fennik::system
