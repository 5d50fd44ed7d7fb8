#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace fennik {

/// A sequence that grows without moving what it holds, and costs as little to go through as one
/// piece of memory.
template <class Value>
class PieceList {
public:
    void push_back(Value value) {
        if (size_ % pieceSize == 0)
            pieces_.emplace_back().reserve(pieceSize);
        pieces_.back().push_back(std::move(value));
        ++size_;
    }
    Value& operator[](std::size_t index) { return pieces_[index / pieceSize][index % pieceSize]; }
    const Value& operator[](std::size_t index) const {
        return pieces_[index / pieceSize][index % pieceSize];
    }
    std::size_t size() const { return size_; }

private:
    static constexpr std::size_t pieceSize = 2048;

    std::vector<std::vector<Value>> pieces_;
    std::size_t size_ = 0;
};

} // namespace fennik
