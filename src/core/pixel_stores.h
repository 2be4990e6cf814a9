#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <span>
#include <utility>
#include <vector>

namespace tessa {

/// Lets a vector grow without clearing what it grows by.
template <typename Value>
class UnsetAllocator : public std::allocator<Value> {
 public:
  using std::allocator<Value>::allocator;
  template <typename Other>
  struct rebind {
    using other = UnsetAllocator<Other>;
  };
  template <typename Other>
  void construct(Other* place) {
    ::new (static_cast<void*>(place)) Other;
  }
  template <typename Other, typename... Arguments>
  void construct(Other* place, Arguments&&... arguments) {
    ::new (static_cast<void*>(place)) Other(std::forward<Arguments>(arguments)...);
  }
};

/// Temperatures of an image, degrees Celsius, indexed [column, row] from 0 with the column running
/// fastest in memory. Indices are checked: a wrong one throws std::out_of_range.
class TemperatureGrid {
 public:
  /// Width x height cells of 0 degrees.
  void Allocate(int width, int height);
  /// The same with cells that hold anything, for one who writes them all.
  void AllocateUnset(int width, int height);

  int Width() const { return width_; }
  int Height() const { return height_; }
  bool Empty() const { return cells_.empty(); }

  float& At(int column, int row) { return cells_[Index(column, row)]; }
  float At(int column, int row) const { return cells_[Index(column, row)]; }
  /// The cell nearest to the position, for readouts at and past the edge; 0 for an empty grid.
  float AtClamped(int column, int row) const;
  std::span<float> Row(int row);
  std::span<const float> Row(int row) const;
  std::span<float> Cells() { return cells_; }
  std::span<const float> Cells() const { return cells_; }

 private:
  std::size_t Index(int column, int row) const;

  int width_ = 0;
  int height_ = 0;
  std::vector<float, UnsetAllocator<float>> cells_;
};

/// The displayed 8-bit values of an image, one run of cells for each image row, as many as the
/// image has columns.
class RowCells {
 public:
  /// `rows` rows of zeros for an image of `width` columns.
  void Allocate(int rows, int width);

  int Rows() const { return rows_; }
  /// Cells of a row.
  int CellCount() const { return cells_; }
  /// The cells of image row `row` (from 0). Throws std::out_of_range for a row that is not there.
  std::span<std::uint8_t> Row(int row);
  std::span<const std::uint8_t> Row(int row) const;

 private:
  std::size_t Start(int row) const;

  int rows_ = 0;
  int cells_ = 0;
  std::vector<std::uint8_t> values_;
};

}  // namespace tessa
