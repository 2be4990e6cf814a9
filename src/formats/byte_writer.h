#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace tessa {

using Bytes = std::vector<std::uint8_t>;

/// Appends numbers of a stated byte order to a growing run of bytes.
class ByteWriter {
 public:
  void U8(std::uint8_t value) { bytes_.push_back(value); }
  void U16Le(std::uint16_t value) { LittleEndian(value, 2); }
  void U16Be(std::uint16_t value) { BigEndian(value, 2); }
  void U32Le(std::uint32_t value) { LittleEndian(value, 4); }
  void U32Be(std::uint32_t value) { BigEndian(value, 4); }
  void I16Be(std::int16_t value) { U16Be(static_cast<std::uint16_t>(value)); }
  void I32Le(std::int32_t value) { U32Le(static_cast<std::uint32_t>(value)); }

  void Append(std::span<const std::uint8_t> bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
  }
  /// A text field of fixed size: cut when too long, filled up with zero bytes when too short.
  void Text(std::string_view text, std::size_t size) {
    const std::string_view kept = text.substr(0, size);
    bytes_.insert(bytes_.end(), kept.begin(), kept.end());
    bytes_.insert(bytes_.end(), size - kept.size(), 0);
  }
  /// Fills with `fill` until the run is `size` bytes long.
  void PadTo(std::size_t size, std::uint8_t fill = 0) {
    if (bytes_.size() < size) {
      bytes_.resize(size, fill);
    }
  }
  void Reserve(std::size_t size) { bytes_.reserve(size); }
  std::size_t Size() const { return bytes_.size(); }
  Bytes Take() { return std::move(bytes_); }

 private:
  void LittleEndian(std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) {
      bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
  }
  void BigEndian(std::uint32_t value, int count) {
    for (int i = count - 1; i >= 0; --i) {
      bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
  }

  Bytes bytes_;
};

}  // namespace tessa
