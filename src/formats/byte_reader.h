#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <string>

namespace tessa {

using ByteSpan = std::span<const std::uint8_t>;

/// Reads numbers of a stated byte order from bytes that nobody vouches for.
/// Does not own the bytes. A read past the end gives zero, moves nothing and makes Failed() true
/// for good, so that a decoder may read a run of fields and test once.
class ByteReader {
 public:
  explicit ByteReader(ByteSpan bytes, std::uint64_t offset = 0) : bytes_(bytes) { Seek(offset); }

  bool Failed() const { return failed_; }
  std::uint64_t Offset() const { return offset_; }
  std::uint64_t Size() const { return bytes_.size(); }
  std::uint64_t Remaining() const { return bytes_.size() - offset_; }

  void Seek(std::uint64_t offset) {
    if (offset > bytes_.size()) {
      failed_ = true;
    } else {
      offset_ = offset;
    }
  }
  void Skip(std::uint64_t count) { static_cast<void>(Take(count)); }

  /// The next `count` bytes, or an empty span and a failure when fewer remain.
  ByteSpan Take(std::uint64_t count) {
    if (count > Remaining()) {
      failed_ = true;
      return {};
    }
    const ByteSpan taken =
        bytes_.subspan(static_cast<std::size_t>(offset_), static_cast<std::size_t>(count));
    offset_ += count;
    return taken;
  }

  std::uint8_t U8() { return static_cast<std::uint8_t>(LittleEndian(1)); }
  std::uint16_t U16Le() { return static_cast<std::uint16_t>(LittleEndian(2)); }
  std::uint16_t U16Be() { return static_cast<std::uint16_t>(BigEndian(2)); }
  std::uint32_t U32Le() { return LittleEndian(4); }
  std::uint32_t U32Be() { return BigEndian(4); }
  std::int16_t I16Le() { return static_cast<std::int16_t>(U16Le()); }
  std::int16_t I16Be() { return static_cast<std::int16_t>(U16Be()); }
  std::int32_t I32Le() { return static_cast<std::int32_t>(U32Le()); }

  /// The next `count` bytes as they are, or fewer never: an empty text when they are not all there.
  std::string Text(std::uint64_t count) {
    const ByteSpan taken = Take(count);
    return {taken.begin(), taken.end()};
  }

 private:
  std::uint32_t LittleEndian(unsigned count) {
    const ByteSpan taken = Take(count);
    std::uint32_t value = 0;
    for (std::size_t i = taken.size(); i > 0; --i) {
      value = value << 8U | taken[i - 1];
    }
    return value;
  }
  std::uint32_t BigEndian(unsigned count) {
    std::uint32_t value = 0;
    for (const std::uint8_t byte : Take(count)) {
      value = value << 8U | byte;
    }
    return value;
  }

  ByteSpan bytes_;
  std::uint64_t offset_ = 0;
  bool failed_ = false;
};

}  // namespace tessa
