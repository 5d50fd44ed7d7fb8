#pragma once

#include "core/listing/FileItem.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace fennik {

/// An array of the `FileItem`s of one folder, stored compactly: the bytes of all names in one piece
/// and 32 bytes an entry, shared by all arrays that were made from the same reading. Copying one,
/// or making another order or selection of it, costs at most 4 bytes an entry. Immutable, and so
/// safe to read on any thread.
class FileItems {
public:
    class Builder;
    /// Stands in an order for the entry ".." of the folder.
    static constexpr std::uint32_t parentRow = 0xFFFFFFFF;

    FileItems() = default;

    std::size_t size() const;
    bool empty() const { return size() == 0; }
    /// Made anew at each call; take `view` where the URL is not needed.
    FileItem operator[](std::size_t row) const;
    /// Valid as long as this array or a copy of it.
    FileItemView view(std::size_t row) const;
    /// Constant time except for the search: linear in the number of items.
    std::optional<std::size_t> rowOf(std::string_view name) const;

    /// The folder whose entries these are; the root for an array that was never built.
    const FileUrl& folder() const;

    /// The array whose row i is this array's row `order[i]`, or the parent entry for `parentRow`.
    FileItems reordered(std::vector<std::uint32_t> order) const;

private:
    struct Store;
    std::uint32_t storedRow(std::size_t row) const;

    std::shared_ptr<const Store> store_;
    std::shared_ptr<const std::vector<std::uint32_t>> order_; ///< none: as stored
};

/// Collects the entries of a folder. The name of an item and the builder's folder make its URL.
class FileItems::Builder {
public:
    explicit Builder(FileUrl folder, std::size_t expected = 0);
    ~Builder();
    Builder(const Builder&) = delete;
    Builder& operator=(const Builder&) = delete;

    /// Copies what `item` shows. The parent entry is not added but asked for by `reordered`.
    void add(const FileItemView& item);
    /// Hands the array over; the builder is empty afterwards.
    FileItems finish();

private:
    std::shared_ptr<Store> store_;
};

} // namespace fennik
