#pragma once

#include "app/model/ports/TextEditors.h"
#include "core/base/Executor.h"

#include <memory>

namespace fennik::system {

/// The applications of the desktop whose entries say that they open plain text.
class InstalledEditors final : public app::TextEditors {
public:
    /// Both outlive it.
    InstalledEditors(DiskExecutor& disk, Executor& main) : disk_(disk), main_(main) {}

    void find(std::function<void(std::vector<app::TextEditor>)> found) override;

private:
    DiskExecutor& disk_;
    Executor& main_;
    std::shared_ptr<int> life_ = std::make_shared<int>();
};

} // namespace fennik::system
