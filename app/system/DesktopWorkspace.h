#pragma once

#include "app/model/ports/Workspace.h"
#include "app/system/Notifier.h"
#include "app/system/SleepGuard.h"
#include "core/base/Executor.h"

#include <QObject>

#include <memory>

namespace fennik::system {

/// The desktop that the window is on. Files are examined and programs started on `disk`. Main
/// thread only.
class DesktopWorkspace final : public QObject, public app::Workspace {
    Q_OBJECT

public:
    /// Both outlive it.
    DesktopWorkspace(DiskExecutor& disk, Executor& main);

    void open(const FileUrl& file, Done done) override;
    void edit(const FileUrl& file, const std::string& application, Done done) override;
    void openTerminal(const Terminal& terminal, Done done) override;
    void reveal(const std::vector<FileUrl>& items, Done done) override;
    void notify(const Notification& notification) override;
    void setSleep(Sleep sleep) override;

signals:
    /// The user has clicked a notification; see `Notifier::clicked`.
    void windowWanted(const QString& activationToken);

private:
    using Result = std::expected<void, std::string>;

    template <class Work>
    void onDisk(const FileUrl& place, Work work, Done done);
    void openFolder(const FileUrl& folder, Done done);

    /// For the buses, which are no disk.
    class Elsewhere final : public Executor {
    public:
        explicit Elsewhere(DiskExecutor& disk) : disk_(disk) {}
        void execute(Task task) override { disk_.execute("/run/dbus", std::move(task)); }

    private:
        DiskExecutor& disk_;
    };

    DiskExecutor& disk_;
    Executor& main_;
    Elsewhere elsewhere_;
    Notifier notifier_;
    SleepGuard sleepGuard_;
    std::shared_ptr<int> life_ = std::make_shared<int>();
};

} // namespace fennik::system
