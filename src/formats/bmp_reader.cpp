#include <algorithm>
#include <bit>
#include <string>

#include "formats/bmp.h"

namespace tessa {
namespace {

constexpr std::uint32_t kUncompressed = 0;
constexpr std::uint32_t kRle8 = 1;
constexpr std::uint32_t kRle4 = 2;
constexpr std::uint32_t kBitFields = 3;
constexpr std::uint32_t kAlphaBitFields = 6;

constexpr std::uint64_t kInfoHeaderAt = kBmpFileHeaderSize;
constexpr std::uint32_t kCoreHeaderSize = 12;
constexpr std::uint32_t kInfoHeaderSize = 40;
/// Headers and palette of the longest kind.
constexpr std::size_t kHeadSize = kBmpFileHeaderSize + 124 + 256 * 4;
/// Bytes read at a time.
constexpr std::size_t kPieceSize = std::size_t{1} << 18;

void Refuse(BmpPicture& picture, ProblemKind kind, std::uint64_t offset, std::string field,
            std::string text) {
  picture.Faults.push_back({kind, offset, std::move(field), std::move(text), true});
}

struct Layout {
  bool TopDown = false;
  std::uint64_t Stride = 0;              // Bytes a row in the file, padding included.
  std::uint64_t RowBytes = 0;            // Without padding.
  std::array<std::uint32_t, 3> Masks{};  // Red, green, blue of 16 and 32 bits.
};

std::uint64_t RowByteCount(int width, int bits) {
  return (static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(bits) + 7) / 8;
}

/// The checks that need the headers alone. False when the picture is refused.
bool CheckHeaders(BmpPicture& picture, std::uint64_t fileSize) {
  const BmpInfoHeader& info = picture.InfoHeader;
  const std::int64_t height = info.Height;
  const std::int64_t rows = height < 0 ? -height : height;
  // The fields of the oldest header are half as wide and lie closer together.
  const bool isCore = info.Size == kCoreHeaderSize;
  if (info.Width <= 0 || info.Width > kMaxPictureSide) {
    Refuse(picture, ProblemKind::kBadValue, 18, "Width", "the width is not between 1 and 32767");
    return false;
  }
  if (rows == 0 || rows > kMaxPictureSide) {
    Refuse(picture, ProblemKind::kBadValue, isCore ? 20 : 22, "Height",
           "the height is not between 1 and 32767");
    return false;
  }
  const int bits = info.BitCount;
  if (bits != 1 && bits != 2 && bits != 4 && bits != 8 && bits != 16 && bits != 24 && bits != 32) {
    Refuse(picture, ProblemKind::kBadValue, isCore ? 24 : 28, "BitCount",
           "there is no bitmap of " + std::to_string(bits) + " bits a pixel");
    return false;
  }
  const bool fits = info.Compression == kUncompressed || (info.Compression == kRle8 && bits == 8) ||
                    (info.Compression == kRle4 && bits == 4) ||
                    ((info.Compression == kBitFields || info.Compression == kAlphaBitFields) &&
                     (bits == 16 || bits == 32));
  if (!fits) {
    Refuse(picture, ProblemKind::kUnsupported, 30, "Compression",
           "the compression " + std::to_string(info.Compression) + " with " + std::to_string(bits) +
               " bits a pixel is not read here");
    return false;
  }
  if (info.Planes != 1) {
    picture.Faults.push_back({ProblemKind::kBadValue, isCore ? 22U : 26U, "Planes",
                              "the number of planes is not 1; it is taken as 1", false});
  }
  if (static_cast<std::uint64_t>(info.Width) * static_cast<std::uint64_t>(rows) >
      kMaxPicturePixels) {
    Refuse(picture, ProblemKind::kTooLarge, 18, "Width",
           "the picture has more than 100 million pixels");
    return false;
  }
  if (picture.FileHeader.OffBits >= fileSize) {
    Refuse(picture, ProblemKind::kTruncated, 10, "OffBits", "the pixels start past the file's end");
    return false;
  }
  if (picture.FileHeader.OffBits < kInfoHeaderAt + info.Size) {
    Refuse(picture, ProblemKind::kBadValue, 10, "OffBits", "the pixels start inside the header");
    return false;
  }
  picture.Width = info.Width;
  picture.Height = static_cast<int>(rows);
  picture.Depth = bits <= 8 ? 8 : 24;
  return true;
}

void ReadPalette(ByteSpan head, BmpPicture& picture) {
  const BmpInfoHeader& info = picture.InfoHeader;
  const std::uint64_t entrySize = info.Size == kCoreHeaderSize ? 3 : 4;
  const std::uint64_t start = kInfoHeaderAt + info.Size;
  const std::uint64_t end = std::min<std::uint64_t>(picture.FileHeader.OffBits, head.size());
  const std::uint64_t room = end > start ? (end - start) / entrySize : 0;
  const std::uint64_t possible = std::uint64_t{1} << info.BitCount;
  const std::uint64_t stated = info.ClrUsed == 0 ? possible : info.ClrUsed;
  const std::uint64_t count = std::min({stated, room, possible, std::uint64_t{256}});
  if (room < std::min(stated, possible)) {
    const bool hasCount = info.Size >= 36;  // Short headers end before the number of colours.
    picture.Faults.push_back({ProblemKind::kBadValue, hasCount ? 46 : start,
                              hasCount ? "ClrUsed" : "Palette",
                              "the palette has fewer colours than the header says", false});
  }
  picture.PaletteEntries = static_cast<int>(count);
  ByteReader reader(head, std::min<std::uint64_t>(start, head.size()));
  for (std::uint64_t i = 0; i < count; ++i) {
    const std::uint8_t blue = reader.U8();
    const std::uint8_t green = reader.U8();
    const std::uint8_t red = reader.U8();
    reader.Skip(entrySize - 3);
    picture.Palette[i] = Rgb(red, green, blue);
  }
}

/// Masks of 16 and 32 bits, from the header or by custom. False when the picture is refused.
bool ReadMasks(ByteSpan head, BmpPicture& picture, Layout& layout) {
  const BmpInfoHeader& info = picture.InfoHeader;
  if (info.Compression == kUncompressed) {
    layout.Masks = info.BitCount == 16
                       ? std::array<std::uint32_t, 3>{0x7C00, 0x03E0, 0x001F}
                       : std::array<std::uint32_t, 3>{0x00FF0000, 0x0000FF00, 0x000000FF};
    return true;
  }
  constexpr std::uint64_t kMasksAt = kInfoHeaderAt + kInfoHeaderSize;
  ByteReader reader(head, std::min<std::uint64_t>(kMasksAt, head.size()));
  for (std::uint32_t& mask : layout.Masks) {
    mask = reader.U32Le();
  }
  const auto contiguous = [](std::uint32_t mask) {
    if (mask == 0) {
      return true;
    }
    const std::uint64_t shifted = std::uint64_t{mask} >> std::countr_zero(mask);
    return std::has_single_bit(shifted + 1);
  };
  if (reader.Failed() || !std::all_of(layout.Masks.begin(), layout.Masks.end(), contiguous)) {
    Refuse(picture, ProblemKind::kBadValue, kMasksAt, "Masks",
           "the colour masks are missing or have holes");
    return false;
  }
  return true;
}

/// The bits under `mask`, stretched to 0..255.
std::uint8_t Channel(std::uint32_t pixel, std::uint32_t mask) {
  if (mask == 0) {
    return 0;
  }
  const std::uint32_t highest = mask >> std::countr_zero(mask);
  const std::uint64_t value = (pixel & mask) >> std::countr_zero(mask);
  return static_cast<std::uint8_t>((value * 255 + highest / 2) / highest);
}

void DecodeIndexRow(const std::uint8_t* from, int width, int bits, std::uint8_t* to) {
  if (bits == 8) {
    std::copy_n(from, width, to);
    return;
  }
  const int perByte = 8 / bits;
  const unsigned mask = (1U << bits) - 1;
  for (int column = 0; column < width; ++column) {
    const int shift = 8 - bits * (column % perByte + 1);
    to[column] = static_cast<std::uint8_t>(from[column / perByte] >> shift & mask);
  }
}

void DecodeColourRow(const std::uint8_t* from, int width, int bits, const Layout& layout,
                     std::uint8_t* to) {
  const int bytes = bits / 8;
  for (int column = 0; column < width; ++column, from += bytes, to += 3) {
    if (bits == 24) {
      to[0] = from[2];
      to[1] = from[1];
      to[2] = from[0];
      continue;
    }
    std::uint32_t pixel = from[0] | static_cast<std::uint32_t>(from[1]) << 8;
    if (bits == 32) {
      pixel |= static_cast<std::uint32_t>(from[2]) << 16 | static_cast<std::uint32_t>(from[3])
                                                               << 24;
    }
    for (std::size_t channel = 0; channel < 3; ++channel) {
      to[channel] = Channel(pixel, layout.Masks[channel]);
    }
  }
}

void RefuseCut(BmpPicture& picture, std::uint64_t fileSize, std::uint64_t wholeRows) {
  Refuse(picture, ProblemKind::kTruncated, fileSize, "Pixels",
         "the file ends inside its picture: " + std::to_string(wholeRows) + " of " +
             std::to_string(picture.Height) + " rows are whole");
}

void DecodeRows(const ByteSource& file, BmpPicture& picture, const Layout& layout) {
  const std::uint64_t start = picture.FileHeader.OffBits;
  const auto rows = static_cast<std::uint64_t>(picture.Height);
  // The padding of the last row is often left out.
  const std::uint64_t needed = layout.Stride * (rows - 1) + layout.RowBytes;
  if (file.Size() - start < needed) {
    RefuseCut(picture, file.Size(), (file.Size() - start) / layout.Stride);
    return;
  }
  const std::size_t rowSize =
      static_cast<std::size_t>(picture.Width) * (picture.Depth == 8 ? 1 : 3);
  picture.Pixels.resize(rowSize * rows);
  const std::uint64_t rowsAtOnce = std::max<std::uint64_t>(kPieceSize / layout.Stride, 1);
  Bytes piece(static_cast<std::size_t>(std::min(rowsAtOnce, rows) * layout.Stride));
  for (std::uint64_t first = 0; first < rows; first += rowsAtOnce) {
    const std::uint64_t count = std::min(rowsAtOnce, rows - first);
    const std::size_t got = file.ReadAt(start + first * layout.Stride, piece);
    if (got < layout.Stride * (count - 1) + layout.RowBytes) {
      RefuseCut(picture, file.Size(), first + got / layout.Stride);
      return;
    }
    for (std::uint64_t i = 0; i < count; ++i) {
      const std::uint64_t row = layout.TopDown ? first + i : rows - 1 - first - i;
      const std::uint8_t* const from = piece.data() + i * layout.Stride;
      std::uint8_t* const to = picture.Pixels.data() + row * rowSize;
      if (picture.Depth == 8) {
        DecodeIndexRow(from, picture.Width, picture.InfoHeader.BitCount, to);
      } else {
        DecodeColourRow(from, picture.Width, picture.InfoHeader.BitCount, layout, to);
      }
    }
  }
}

/// The coded pixels of a file, byte after byte. Past the end there are zeros and Failed() is true.
class CodedBytes {
 public:
  CodedBytes(const ByteSource& file, std::uint64_t offset)
      : file_(file), next_(offset), piece_(kPieceSize) {}

  bool Failed() const { return failed_; }
  /// Position in the file of the byte that comes next.
  std::uint64_t Offset() const { return next_ - (present_ - used_); }
  std::uint8_t U8() {
    if (used_ == present_ && !Refill()) {
      return 0;
    }
    return piece_[used_++];
  }

 private:
  bool Refill() {
    present_ = failed_ ? 0 : file_.ReadAt(next_, piece_);
    used_ = 0;
    next_ += present_;
    failed_ = present_ == 0;
    return !failed_;
  }

  const ByteSource& file_;
  std::uint64_t next_;
  Bytes piece_;
  std::size_t present_ = 0;
  std::size_t used_ = 0;
  bool failed_ = false;
};

/// Run-length coded rows. Pixels that no run reaches stay index 0; runs past the edge are cut.
class RleDecoder {
 public:
  RleDecoder(const ByteSource& file, BmpPicture& picture, bool topDown)
      : picture_(picture),
        reader_(file, picture.FileHeader.OffBits),
        mostBytes_(MostBytes(picture)),
        nibbles_(picture.InfoHeader.Compression == kRle4),
        topDown_(topDown) {}

  void Decode() {
    const std::uint64_t start = reader_.Offset();
    while (!reader_.Failed() && line_ < picture_.Height) {
      if (reader_.Offset() - start > mostBytes_) {
        picture_.Faults.push_back({ProblemKind::kBadValue, reader_.Offset(), "Pixels",
                                   "the coded picture has more codes than its pixels can need",
                                   false});
        return;
      }
      const std::uint8_t count = reader_.U8();
      const std::uint8_t value = reader_.U8();
      if (reader_.Failed()) {
        break;
      }
      if (count > 0) {
        PutRun(count, value);
      } else if (value == 0) {
        column_ = 0;
        ++line_;
      } else if (value == 1) {
        return;
      } else if (value == 2) {
        column_ += reader_.U8();
        line_ += reader_.U8();
      } else {
        PutLiterals(value);
      }
    }
    if (reader_.Failed()) {
      picture_.Faults.push_back({ProblemKind::kTruncated, reader_.Offset(), "Pixels",
                                 "the coded picture ends without its end mark", false});
    }
  }

 private:
  /// Two bytes for each pixel and for each end of a row are the most that a writer can mean; twice
  /// that and some for steps that go nowhere.
  static std::uint64_t MostBytes(const BmpPicture& picture) {
    constexpr std::uint64_t kSome = 1ULL << 16;
    return 4 * static_cast<std::uint64_t>(picture.Width + 1) *
               static_cast<std::uint64_t>(picture.Height) +
           kSome;
  }
  /// Pixels that are left in the line, at most `count`.
  int Room(int count) const {
    const std::int64_t left = line_ < picture_.Height ? picture_.Width - column_ : 0;
    return static_cast<int>(std::clamp<std::int64_t>(left, 0, count));
  }
  /// Where the next pixel goes; only to be used where there is room.
  std::uint8_t* Target() {
    const std::int64_t row = topDown_ ? line_ : picture_.Height - 1 - line_;
    return picture_.Pixels.data() +
           static_cast<std::size_t>(row) * static_cast<std::size_t>(picture_.Width) +
           static_cast<std::size_t>(column_);
  }
  void PutRun(int count, std::uint8_t value) {
    if (const int room = Room(count); room > 0) {
      std::uint8_t* const to = Target();
      for (int i = 0; i < room; ++i) {
        to[i] = nibbles_ ? Nibble(value, i) : value;
      }
    }
    column_ += count;
  }
  void PutLiterals(int count) {
    const int room = Room(count);
    std::uint8_t* const to = room > 0 ? Target() : nullptr;
    std::uint8_t value = 0;
    for (int i = 0; i < count; ++i) {
      if (!nibbles_ || i % 2 == 0) {
        value = reader_.U8();
      }
      if (reader_.Failed()) {
        return;
      }
      if (i < room) {
        to[i] = nibbles_ ? Nibble(value, i) : value;
      }
    }
    column_ += count;
    const int bytes = nibbles_ ? (count + 1) / 2 : count;
    if (bytes % 2 != 0) {
      reader_.U8();
    }
  }
  static std::uint8_t Nibble(std::uint8_t value, int position) {
    return position % 2 == 0 ? value >> 4 : value & 0x0F;
  }

  BmpPicture& picture_;
  CodedBytes reader_;
  std::uint64_t mostBytes_;
  bool nibbles_;
  bool topDown_;
  // 64 bits: a long file of nothing but steps to the right must not wrap around.
  std::int64_t column_ = 0;
  std::int64_t line_ = 0;  // In the order of the file.
};

void DecodeRle(const ByteSource& file, BmpPicture& picture, bool topDown) {
  picture.Pixels.resize(static_cast<std::size_t>(picture.Width) *
                        static_cast<std::size_t>(picture.Height));
  RleDecoder(file, picture, topDown).Decode();
}

}  // namespace

void ReadBmpHeaders(ByteSpan file, BmpFileHeader& fileHeader, BmpInfoHeader& infoHeader,
                    Problems& faults) {
  ByteReader reader(file);
  fileHeader.Type = reader.U16Le();
  fileHeader.Size = reader.U32Le();
  fileHeader.ReservedLow = reader.I16Le();
  fileHeader.ReservedHigh = reader.I16Le();
  fileHeader.OffBits = reader.U32Le();
  infoHeader.Size = reader.U32Le();
  if (infoHeader.Size == kCoreHeaderSize) {
    infoHeader.Width = reader.U16Le();
    infoHeader.Height = reader.U16Le();
    infoHeader.Planes = reader.U16Le();
    infoHeader.BitCount = reader.U16Le();
  } else {
    // The longer headers of older systems may stop after any field; what is left out is zero.
    const std::uint64_t stop = kInfoHeaderAt + infoHeader.Size;
    const auto within = [&](std::uint64_t size) { return reader.Offset() + size <= stop; };
    infoHeader.Width = reader.I32Le();
    infoHeader.Height = reader.I32Le();
    infoHeader.Planes = reader.U16Le();
    infoHeader.BitCount = reader.U16Le();
    infoHeader.Compression = within(4) ? reader.U32Le() : 0;
    infoHeader.SizeImage = within(4) ? reader.U32Le() : 0;
    infoHeader.XPelsPerMeter = within(4) ? reader.I32Le() : 0;
    infoHeader.YPelsPerMeter = within(4) ? reader.I32Le() : 0;
    infoHeader.ClrUsed = within(4) ? reader.U32Le() : 0;
    infoHeader.ClrImportant = within(4) ? reader.U32Le() : 0;
  }
  if (fileHeader.Type != kBmpType) {
    faults.push_back({ProblemKind::kWrongKind, 0, "Type",
                      "the file does not begin with the letters BM of a bitmap", true});
  } else if (reader.Failed()) {
    faults.push_back({ProblemKind::kTruncated, file.size(), "BmpInfoHeader",
                      "the file ends inside its header", true});
  } else if (infoHeader.Size != kCoreHeaderSize &&
             (infoHeader.Size < 16 || infoHeader.Size > 124)) {
    faults.push_back({ProblemKind::kBadValue, kInfoHeaderAt, "Size",
                      "no bitmap header is " + std::to_string(infoHeader.Size) + " bytes long",
                      true});
  }
}

BmpPicture DecodeBmp(ByteSpan file) {
  return DecodeBmp(MemorySource(file));
}

BmpPicture DecodeBmp(const ByteSource& file) {
  BmpPicture picture;
  Bytes head(static_cast<std::size_t>(std::min<std::uint64_t>(file.Size(), kHeadSize)));
  head.resize(file.ReadAt(0, head));
  ReadBmpHeaders(head, picture.FileHeader, picture.InfoHeader, picture.Faults);
  if (FindNoImage(picture.Faults) == nullptr && CheckHeaders(picture, file.Size())) {
    Layout layout;
    layout.TopDown = picture.InfoHeader.Height < 0;
    layout.RowBytes = RowByteCount(picture.Width, picture.InfoHeader.BitCount);
    layout.Stride = (layout.RowBytes + 3) / 4 * 4;
    if (picture.Depth == 8) {
      ReadPalette(head, picture);
    }
    const std::uint32_t compression = picture.InfoHeader.Compression;
    if (compression == kRle8 || compression == kRle4) {
      DecodeRle(file, picture, layout.TopDown);
    } else if (picture.Depth == 8 || picture.InfoHeader.BitCount == 24 ||
               ReadMasks(head, picture, layout)) {
      DecodeRows(file, picture, layout);
    }
  }
  if (FindNoImage(picture.Faults) != nullptr) {
    picture.Width = 0;
    picture.Height = 0;
    picture.Depth = 0;
    picture.Pixels.clear();
  }
  return picture;
}

}  // namespace tessa
