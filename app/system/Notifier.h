#pragma once

#include <QObject>

namespace fennik::system {

/// Notifications of the desktop (org.freedesktop.Notifications), one at a time. Nothing here waits,
/// and where no desktop shows any, nothing happens. Main thread only.
class Notifier final : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Plain text, in place of the last one.
    void show(const QString& title, const QString& text);
    /// Takes it back.
    void withdraw();

signals:
    /// The user has clicked it. The token of the desktop, which may be empty, lets a window come to
    /// the front.
    void clicked(const QString& activationToken);

private slots:
    void takeToken(uint id, const QString& token);
    void takeAction(uint id, const QString& action);
    void takeClosing(uint id, uint reason);

private:
    void listen();

    bool listens_ = false;
    bool isWanted_ = false; ///< and not withdrawn since
    uint id_ = 0;           ///< of the one on show; 0: none
    QString token_;
};

} // namespace fennik::system
