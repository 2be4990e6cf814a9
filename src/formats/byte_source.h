#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "formats/byte_reader.h"

namespace tessa {

/// Bytes that are read piece by piece, so that a decoder never holds a whole file.
class ByteSource {
 public:
  ByteSource() = default;
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;
  virtual ~ByteSource() = default;

  virtual std::uint64_t Size() const = 0;
  /// Fills `to` with the bytes from `offset` on and tells how many there were: fewer at the end of
  /// the source or where it cannot be read. Never throws, since decoders in C call it.
  virtual std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> to) const noexcept = 0;
};

/// Bytes in memory, which the caller owns and keeps.
class MemorySource : public ByteSource {
 public:
  explicit MemorySource(ByteSpan bytes) : bytes_(bytes) {}

  std::uint64_t Size() const override { return bytes_.size(); }
  std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> to) const noexcept override {
    if (offset >= bytes_.size()) {
      return 0;
    }
    const std::size_t count = std::min<std::uint64_t>(to.size(), bytes_.size() - offset);
    std::copy_n(bytes_.data() + offset, count, to.data());
    return count;
  }

 private:
  ByteSpan bytes_;
};

}  // namespace tessa
