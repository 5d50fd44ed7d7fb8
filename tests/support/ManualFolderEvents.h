#pragma once

#include "core/platform/FolderEvents.h"

#include <map>
#include <memory>
#include <string>
#include <utility>

namespace fennik::test {

/// Changes of folders that the test tells of.
class ManualFolderEvents final : public FolderEvents {
public:
    std::unique_ptr<Watch> watch(const std::string& path, std::function<void()> changed) override {
        return std::make_unique<ManualWatch>(*this, path, std::move(changed));
    }
    /// Calls everybody who watches `path`.
    void tell(const std::string& path) {
        for (auto [begin, end] = watched_.equal_range(path); begin != end;)
            (begin++)->second->changed();
    }
    std::size_t count() const { return watched_.size(); }

private:
    struct ManualWatch final : Watch {
        ManualWatch(ManualFolderEvents& events, const std::string& path,
                    std::function<void()> callback)
            : owner(events),
              changed(std::move(callback)),
              place(events.watched_.emplace(path, this)) {}
        ~ManualWatch() override { owner.watched_.erase(place); }
        ManualWatch(const ManualWatch&) = delete;
        ManualWatch& operator=(const ManualWatch&) = delete;

        ManualFolderEvents& owner;
        std::function<void()> changed;
        std::multimap<std::string, ManualWatch*>::iterator place;
    };

    std::multimap<std::string, ManualWatch*> watched_;
};

} // namespace fennik::test
