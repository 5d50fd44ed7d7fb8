#include "benchmarks/BareSizing.h"

#include "benchmarks/BareListing.h"

#include <array>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace fennik::bench {

namespace {

class Tree {
public:
    explicit Tree(std::string root) { folders_.push_back(std::move(root)); }

    void work() {
        std::unique_lock lock(mutex_);
        for (;;) {
            changed_.wait(lock, [this] { return !folders_.empty() || reading_ == 0; });
            if (folders_.empty())
                return;
            const auto path = std::move(folders_.back());
            folders_.pop_back();
            ++reading_;
            lock.unlock();
            TreeTotals found;
            auto inner = read(path, found);
            lock.lock();
            --reading_;
            total_.bytes += found.bytes;
            total_.files += found.files;
            total_.folders += found.folders;
            for (auto& folder : inner)
                folders_.push_back(std::move(folder));
            changed_.notify_all();
        }
    }

    const TreeTotals& total() const { return total_; }

private:
    static std::vector<std::string> read(const std::string& path, TreeTotals& found) {
        const OpenFolder folder(path);
        std::vector<std::string> inner;
        std::array<char, 32UL * 1024> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init)
        while (const auto length = folder.read(buffer.data(), buffer.size())) {
            forEachRecord(buffer.data(), length, [&](const dirent64& record) {
                if (record.d_type == DT_DIR) {
                    ++found.folders;
                    inner.push_back(path + '/' + record.d_name);
                    return;
                }
                ++found.files;
                if (record.d_type == DT_REG)
                    found.bytes += static_cast<std::int64_t>(
                        folder.examine(record.d_name, STATX_SIZE).stx_size);
            });
        }
        return inner;
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> folders_;
    int reading_ = 0;
    TreeTotals total_;
};

} // namespace

TreeTotals addUpTree(const std::string& root, int threads) {
    Tree tree(root);
    {
        std::vector<std::jthread> helpers;
        for (int i = 1; i < threads; ++i)
            helpers.emplace_back([&tree] { tree.work(); });
        tree.work();
    }
    return tree.total();
}

} // namespace fennik::bench
