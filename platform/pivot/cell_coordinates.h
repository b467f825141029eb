// Where a cell of a pivot table stands: one category number per dimension.
//
// Up to four lie in the object itself, which is what nearly every table needs: a table has as many
// of these as it has cells.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <utility>
#include <vector>

namespace vornwout {

class CellCoordinates {
 public:
  CellCoordinates() = default;
  CellCoordinates(std::initializer_list<int> values)
      : CellCoordinates(std::span<const int>(values.begin(), values.size())) {}
  // From the coordinates as whoever counted them has them.
  CellCoordinates(const std::vector<int>& values) : CellCoordinates(std::span<const int>(values)) {}
  explicit CellCoordinates(std::span<const int> values) {
    resize(values.size());
    std::copy(values.begin(), values.end(), begin());
  }
  CellCoordinates(const CellCoordinates& other)
      : CellCoordinates(std::span<const int>(other.begin(), other.size())) {}
  CellCoordinates(CellCoordinates&& other) noexcept { swap(other); }
  CellCoordinates& operator=(CellCoordinates other) noexcept {
    swap(other);
    return *this;
  }
  ~CellCoordinates() {
    if (!isInline()) delete[] heap_;
  }

  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  int* begin() { return isInline() ? inline_ : heap_; }
  int* end() { return begin() + size_; }
  const int* begin() const { return isInline() ? inline_ : heap_; }
  const int* end() const { return begin() + size_; }
  int& operator[](std::size_t index) { return begin()[index]; }
  int operator[](std::size_t index) const { return begin()[index]; }

  /// New coordinates are 0.
  void resize(std::size_t size) {
    reserve(size);
    if (size > size_) std::fill(begin() + size_, begin() + size, 0);
    size_ = static_cast<std::uint32_t>(size);
  }
  void reserve(std::size_t capacity) {
    if (capacity <= capacity_) return;
    int* larger = new int[capacity];
    std::copy(begin(), end(), larger);
    if (!isInline()) delete[] heap_;
    heap_ = larger;
    capacity_ = static_cast<std::uint32_t>(capacity);
  }
  void push_back(int value) {
    if (size_ == capacity_) reserve(std::size_t{2} * capacity_);
    begin()[size_++] = value;
  }

  friend bool operator==(const CellCoordinates& a, const CellCoordinates& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
  }

 private:
  static constexpr std::uint32_t kInline = 4;

  bool isInline() const { return capacity_ == kInline; }
  void swap(CellCoordinates& other) noexcept {
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
    // The numbers or the pointer, whichever it is.
    std::swap(inline_, other.inline_);
  }

  std::uint32_t size_ = 0;
  std::uint32_t capacity_ = kInline;
  union {
    int inline_[kInline] = {};
    int* heap_;
  };
};

}  // namespace vornwout
