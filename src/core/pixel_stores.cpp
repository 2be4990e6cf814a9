#include "core/pixel_stores.h"

#include <algorithm>
#include <stdexcept>

namespace tessa {

void TemperatureGrid::Allocate(int width, int height) {
  width_ = std::max(width, 0);
  height_ = std::max(height, 0);
  cells_.assign(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_), 0.0F);
}

void TemperatureGrid::AllocateUnset(int width, int height) {
  width_ = std::max(width, 0);
  height_ = std::max(height, 0);
  cells_.clear();
  cells_.resize(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
}

std::size_t TemperatureGrid::Index(int column, int row) const {
  if (column < 0 || column >= width_ || row < 0 || row >= height_) {
    throw std::out_of_range("temperature grid index");
  }
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(width_) +
         static_cast<std::size_t>(column);
}

float TemperatureGrid::AtClamped(int column, int row) const {
  if (cells_.empty()) {
    return 0.0F;
  }
  return At(std::clamp(column, 0, width_ - 1), std::clamp(row, 0, height_ - 1));
}

std::span<float> TemperatureGrid::Row(int row) {
  return std::span(cells_).subspan(Index(0, row), static_cast<std::size_t>(width_));
}

std::span<const float> TemperatureGrid::Row(int row) const {
  return std::span(cells_).subspan(Index(0, row), static_cast<std::size_t>(width_));
}

void RowCells::Allocate(int rows, int width) {
  rows_ = std::max(rows, 0);
  cells_ = std::max(width, 0);
  values_.assign(static_cast<std::size_t>(rows_) * static_cast<std::size_t>(cells_), 0);
}

std::size_t RowCells::Start(int row) const {
  if (row < 0 || row >= rows_) {
    throw std::out_of_range("row buffer index");
  }
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(cells_);
}

std::span<std::uint8_t> RowCells::Row(int row) {
  return std::span(values_).subspan(Start(row), static_cast<std::size_t>(cells_));
}

std::span<const std::uint8_t> RowCells::Row(int row) const {
  return std::span(values_).subspan(Start(row), static_cast<std::size_t>(cells_));
}

}  // namespace tessa
