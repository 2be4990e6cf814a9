#include "test_images.h"

namespace tessa::testing {
namespace {

/// A bitmap file described part by part; the header's numbers may lie about the rest.
struct BmpParts {
  std::int32_t Width = 0;
  std::int32_t Height = 0;
  std::uint16_t Bits = 8;
  std::uint32_t Compression = 0;
  std::uint32_t HeaderSize = 40;
  std::uint32_t ClrUsed = 0;
  Bytes Table{};  // Palette or masks.
  Bytes Pixels{};
};

Bytes Build(const BmpParts& parts) {
  const std::size_t offBits = 14 + parts.HeaderSize + parts.Table.size();
  ByteWriter writer;
  writer.Text("BM", 2);
  writer.U32Le(static_cast<std::uint32_t>(offBits + parts.Pixels.size()));
  writer.U32Le(0);
  writer.U32Le(static_cast<std::uint32_t>(offBits));
  writer.U32Le(parts.HeaderSize);
  if (parts.HeaderSize == 12) {
    writer.U16Le(static_cast<std::uint16_t>(parts.Width));
    writer.U16Le(static_cast<std::uint16_t>(parts.Height));
  } else {
    writer.I32Le(parts.Width);
    writer.I32Le(parts.Height);
  }
  writer.U16Le(1);
  writer.U16Le(parts.Bits);
  if (parts.HeaderSize >= 40) {
    writer.U32Le(parts.Compression);
    writer.PadTo(46);
    writer.U32Le(parts.ClrUsed);
  }
  writer.PadTo(14 + parts.HeaderSize);
  writer.Append(parts.Table);
  writer.Append(parts.Pixels);
  return writer.Take();
}

/// Four bytes a colour, the last unused: entry i is red i, green 2 i, blue 3 i (modulo 256).
Bytes PaletteBytes(int count, int entrySize = 4) {
  Bytes bytes;
  for (int i = 0; i < count; ++i) {
    for (const int value : {3 * i, 2 * i, i, 0xEE}) {
      bytes.push_back(static_cast<std::uint8_t>(value));
    }
    bytes.resize(static_cast<std::size_t>((i + 1) * entrySize));
  }
  return bytes;
}
Colour PaletteEntry(int i) {
  return Rgb(static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(2 * i),
             static_cast<std::uint8_t>(3 * i));
}

constexpr int kWidth = 13;
constexpr int kHeight = 5;

std::uint32_t IndexAt(int column, int row, int bits) {
  return static_cast<std::uint32_t>(column + 16 * row + column / 3) & ((1U << bits) - 1);
}
Bytes IndexPixels(int bits) {
  return Raster<std::uint8_t>(kWidth, kHeight,
                              [bits](int column, int row) { return IndexAt(column, row, bits); });
}
/// The picture of IndexPixels, rows filled up to four bytes with something that must not show.
BmpParts IndexParts(int bits, bool topDown = false, int colours = -1) {
  Bytes packed;
  for (int line = 0; line < kHeight; ++line) {
    for (int column = 0; column < kWidth; ++column) {
      if (column * bits % 8 == 0) {
        packed.push_back(0);
      }
      const std::uint32_t index = IndexAt(column, topDown ? line : kHeight - 1 - line, bits);
      const int shift = 8 - bits - column * bits % 8;
      packed.back() = static_cast<std::uint8_t>(packed.back() | index << shift);
    }
    packed.resize((packed.size() + 3) / 4 * 4, 0xEE);
  }
  return {.Width = kWidth,
          .Height = topDown ? -kHeight : kHeight,
          .Bits = static_cast<std::uint16_t>(bits),
          .Table = PaletteBytes(colours < 0 ? 1 << bits : colours),
          .Pixels = packed};
}

void ExpectRefused(const Bytes& file, const FaultFacts& fault, const std::string& what) {
  const BmpPicture picture = DecodeBmp(file);
  EXPECT_THAT(FactsOf(picture.Faults), ElementsAre(fault)) << what;
  EXPECT_EQ(picture.Width + picture.Height, 0) << what;
  EXPECT_THAT(picture.Pixels, IsEmpty()) << what;
}

TEST(BmpReader, IndicesOfEveryDepthKeepTheirPlaceAndTheirColour) {
  for (const int bits : {1, 2, 4, 8}) {
    for (const bool topDown : {false, true}) {
      const BmpPicture picture = DecodeBmp(Build(IndexParts(bits, topDown)));
      EXPECT_THAT(picture.Faults, IsEmpty());
      EXPECT_EQ(picture.Width, kWidth);
      EXPECT_EQ(picture.Height, kHeight);
      EXPECT_EQ(picture.Depth, 8);
      EXPECT_EQ(picture.Pixels, IndexPixels(bits)) << bits << " bits, top-down " << topDown;
      for (int i = 0; i < 256; ++i) {
        ASSERT_EQ(picture.Palette[static_cast<std::size_t>(i)],
                  i < 1 << bits ? PaletteEntry(i) : 0U);
      }
    }
  }
}

TEST(BmpReader, ColoursOfEveryDepthAreStretchedToFullBytes) {
  // Depth, compression, masks; three stored pixels and padding, then another such row above them;
  // the picture.
  using Case = std::tuple<std::uint16_t, std::uint32_t, std::string_view, std::string_view,
                          std::string_view>;
  const Case cases[] = {
      {24, 0, "", "030201 060504 090807 EEEEEE FDFEFF 302010 800000 EEEEEE",
       "FFFEFD 102030 000080 010203 040506 070809"},
      // What might be alpha is ignored.
      {32, 0, "", "030201FF 06050400 09080780 FDFEFFFF 30201000 80000001",
       "FFFEFD 102030 000080 010203 040506 070809"},
      // Five bits: 1, 16 and 30 of 31 are 8.2, 131.6 and 246.8 of 255.
      {16, 0, "", "007C E003 1F00 EEEE 0104 0042 DE83 EEEE",
       "080008 848400 00F7F7 FF0000 00FF00 0000FF"},
      // Six bits: 1 and 32 of 63 are 4.05 and 129.5.
      {16, 3, "00F80000 E0070000 1F000000", "00F8 E007 1F00 EEEE 2000 0004 1084 EEEE",
       "000400 008200 848284 FF0000 00FF00 0000FF"},
      // Ten, eleven and eleven bits.
      {32, 3, "0000C0FF 00F83F00 FF070000", "0000C0FF 00F83F00 FF070000 00000080 00002000 00040000",
       "800000 008000 000080 FF0000 00FF00 0000FF"},
      // No bits at all for green; blue above red.
      {32, 6, "FF000000 00000000 000000FF", "01000000 00FF0000 00000002 00000000 FFFFFFFF FE000003",
       "000000 FF00FF FE0003 010000 000000 000002"},
      // Seven, one and eight bits.
      {16, 3, "FE000000 01000000 00FF0000", "0100 FE00 00FF EEEE 0201 0000 0380 EEEE",
       "020001 000000 02FF80 00FF00 FF0000 0000FF"}};
  for (const auto& [bits, compression, masks, stored, expected] : cases) {
    const BmpPicture picture = DecodeBmp(Build({.Width = 3,
                                                .Height = 2,
                                                .Bits = bits,
                                                .Compression = compression,
                                                .Table = Hex(masks),
                                                .Pixels = Hex(stored)}));
    EXPECT_THAT(picture.Faults, IsEmpty());
    EXPECT_EQ(picture.Depth, 24);
    EXPECT_EQ(picture.Pixels, Hex(expected)) << bits << " bits, masks " << masks;
  }
}

TEST(BmpReader, OlderAndNewerHeadersAreRead) {
  for (const std::uint32_t headerSize : {12U, 16U, 40U, 64U, 108U, 124U}) {
    BmpParts parts = IndexParts(8);
    parts.HeaderSize = headerSize;
    parts.Table = PaletteBytes(256, headerSize == 12 ? 3 : 4);
    const BmpPicture picture = DecodeBmp(Build(parts));
    EXPECT_THAT(picture.Faults, IsEmpty()) << headerSize;
    EXPECT_EQ(picture.Pixels, IndexPixels(8)) << headerSize;
    EXPECT_EQ(picture.Palette[200], PaletteEntry(200)) << headerSize;
  }
}

TEST(BmpReader, MissingPaletteEntriesAreBlackAndReported) {
  const BmpPicture picture = DecodeBmp(Build(IndexParts(8, false, 3)));
  EXPECT_THAT(FactsOf(picture.Faults), ElementsAre(BadValue(46, "ClrUsed")));
  EXPECT_EQ(picture.Palette[2], PaletteEntry(2));
  EXPECT_EQ(picture.Palette[3], 0U);
  EXPECT_EQ(picture.Pixels, IndexPixels(8));

  BmpParts stated = IndexParts(8, false, 3);
  stated.ClrUsed = 2;
  EXPECT_THAT(DecodeBmp(Build(stated)).Faults, IsEmpty());
  EXPECT_EQ(DecodeBmp(Build(stated)).Palette[2], 0U) << "more colours than the header says";
  BmpParts many = IndexParts(4, false, 300);
  many.ClrUsed = 300;
  EXPECT_THAT(DecodeBmp(Build(many)).Faults, IsEmpty());
  EXPECT_EQ(DecodeBmp(Build(many)).Pixels, IndexPixels(4));
  EXPECT_EQ(DecodeBmp(Build(many)).Palette[16], 0U) << "a colour that four bits cannot mean";
}

TEST(BmpReader, RunLengthCodedRowsAreUnpacked) {
  struct Case {
    std::string_view What;
    std::uint32_t Compression;
    std::string_view Codes;
    std::string_view Picture;  // Rows from the top, a digit a pixel.
    bool Ends = true;
  };
  const Case cases[] = {
      {"runs", 1, "0301 0202 0000 0503 0001", "33333/11122"},
      {"odd literals", 1, "0003 010203 99 0204 0000 0005 0506070809 99 0001", "56789/12344"},
      {"even literals", 1, "0004 01020304 0105 0000 0506 0001", "66666/12345"},
      {"a step right and up", 1, "0201 0002 0101 0203 0001", "00033/11000"},
      {"an early end", 1, "0201 0001 0509", "00000/11000"},
      {"no end mark behind the last row", 1, "0501 0000 0502 0000", "22222/11111"},
      {"a run over the edge", 1, "0907 0108 0000 0502 0001", "22222/77777"},
      {"literals over the edge", 1, "0007 01020304050607 99 0000 0502 0001", "22222/12345"},
      {"rows over the top", 1, "0501 0000 0502 0000 0503 0001", "22222/11111"},
      {"a step out of the picture", 1, "0002 FFFF 0509 0001", "00000/00000"},
      {"a step out to the right", 1, "0002 C800 0509 0000 0104 0001", "40000/00000"},
      {"runs of two nibbles in turn", 2, "0512 0000 0434 0001", "34340/12121"},
      {"odd literal nibbles", 2, "0005 12345F 99 0000 0003 678F 0001", "67800/12345"},
      {"even literal nibbles", 2, "0004 1234 0156 0000 0566 0001", "66666/12345"},
      {"nibbles over the edge", 2, "0009 123456789F 99 0000 0566 0001", "66666/12345"},
      {"an odd run and another", 2, "0312 0234 0000 0002 0200 0156 0001", "00500/12134"},
      {"no end mark", 1, "0501 0000 0202", "22000/11111", false},
      {"half a code", 1, "0501 0000 0202 03", "22000/11111", false},
      {"literals that break off", 1, "0005 010203", "00000/12300", false},
      {"nibbles that break off", 2, "0005 12", "00000/12000", false},
      {"a step that breaks off", 1, "0201 0002 01", "00000/11000", false}};
  for (const Case& test : cases) {
    Bytes pixels;
    for (const char digit : test.Picture) {
      if (digit != '/') {
        pixels.push_back(static_cast<std::uint8_t>(digit - '0'));
      }
    }
    BmpParts parts{.Width = 5, .Height = 2, .Compression = test.Compression};
    parts.Bits = test.Compression == 1 ? 8 : 4;
    parts.Pixels = Hex(test.Codes);
    parts.Table = PaletteBytes(16);
    parts.ClrUsed = 16;
    const BmpPicture picture = DecodeBmp(Build(parts));
    EXPECT_EQ(picture.Pixels, pixels) << test.What;
    const FaultFacts noEnd = Truncated(118 + parts.Pixels.size(), "Pixels", false);
    EXPECT_EQ(FactsOf(picture.Faults),
              test.Ends ? std::vector<FaultFacts>() : std::vector<FaultFacts>{noEnd})
        << test.What;

    parts.Height = -2;
    std::rotate(pixels.begin(), pixels.begin() + 5, pixels.end());
    EXPECT_EQ(DecodeBmp(Build(parts)).Pixels, pixels) << test.What << ", top-down";
  }
}

TEST(BmpReader, HeadersThatCannotBeMeantAreRefusedWithTheirField) {
  const Bytes good = Build(IndexParts(8));
  const auto size = static_cast<std::uint32_t>(good.size());
  using Case =
      std::tuple<std::size_t, std::size_t, std::vector<std::uint32_t>, ProblemKind, std::string>;
  const Case cases[] = {
      {0, 2, {0, 0x424D, 0x4142}, ProblemKind::kWrongKind, "Type"},
      {10, 4, {size, size + 1, 0xFFFFFFFF}, ProblemKind::kTruncated, "OffBits"},
      {10, 4, {0, 2, 53}, ProblemKind::kBadValue, "OffBits"},
      {14, 4, {0, 11, 13, 15, 125, 0xFFFFFFFF}, ProblemKind::kBadValue, "Size"},
      {18, 4, {0, 32768, 0x80000000, 0xFFFFFFFF}, ProblemKind::kBadValue, "Width"},
      {22, 4, {0, 32768, 0x80000000, 0xFFFF8000}, ProblemKind::kBadValue, "Height"},
      {28, 2, {0, 3, 5, 12, 48, 64, 0xFFFF}, ProblemKind::kBadValue, "BitCount"},
      {30, 4, {2, 3, 4, 5, 6, 0xFFFFFFFF}, ProblemKind::kUnsupported, "Compression"}};
  for (const auto& [at, bytes, values, kind, field] : cases) {
    for (const std::uint32_t value : values) {
      Bytes file = good;
      for (std::size_t i = 0; i < bytes; ++i) {
        file[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
      }
      ExpectRefused(file, {kind, at, field, true}, field + " " + std::to_string(value));
    }
  }
  // A compression belongs to certain depths.
  const std::pair<std::uint16_t, std::uint32_t> mismatches[] = {{4, 1},  {1, 1},  {24, 1}, {8, 2},
                                                                {24, 2}, {24, 3}, {4, 6}};
  for (const auto& [bits, compression] : mismatches) {
    BmpParts parts{.Width = 1, .Height = 1, .Bits = bits, .Compression = compression};
    parts.Pixels = Bytes(64);
    ExpectRefused(Build(parts), {ProblemKind::kUnsupported, 30, "Compression", true},
                  std::to_string(bits) + " bits");
  }
  Bytes planes = good;
  planes[26] = 3;
  EXPECT_THAT(FactsOf(DecodeBmp(planes).Faults), ElementsAre(BadValue(26, "Planes")));
  EXPECT_EQ(DecodeBmp(planes).Pixels, IndexPixels(8));

  // The fields of the oldest header lie elsewhere.
  BmpParts old{.Width = 1, .Height = 0, .HeaderSize = 12, .Pixels = Bytes(4)};
  ExpectRefused(Build(old), {ProblemKind::kBadValue, 20, "Height", true}, "old height");
  old.Height = 1;
  old.Bits = 3;
  ExpectRefused(Build(old), {ProblemKind::kBadValue, 24, "BitCount", true}, "old bit count");
  old.Bits = 8;
  EXPECT_THAT(FactsOf(DecodeBmp(Build(old)).Faults), ElementsAre(BadValue(26, "Palette")));

  const FaultFacts badMasks(ProblemKind::kBadValue, 54, "Masks", true);
  BmpParts masked{.Width = 1, .Height = 1, .Bits = 32, .Compression = 3, .Pixels = Bytes(4)};
  masked.Table = Hex("05000000 02000000 08000000");
  ExpectRefused(Build(masked), badMasks, "a mask with a hole");
  masked.Table = Hex("0100000002");
  ExpectRefused(Build(masked), badMasks, "masks that break off");
}

TEST(BmpReader, AFileCutAtAnyLengthShowsNoPicture) {
  BmpParts parts = IndexParts(8, false, 16);
  parts.ClrUsed = 16;
  const Bytes whole = Build(parts);
  constexpr std::size_t kOffBits = 54 + 16 * 4;
  // The padding of the last row may be left out.
  const std::size_t needed = whole.size() - 3;
  for (std::size_t length = 0; length < needed; ++length) {
    const FaultFacts expected = length < 2    ? FaultFacts(ProblemKind::kWrongKind, 0, "Type", true)
                                : length < 54 ? Truncated(length, "BmpInfoHeader", true)
                                : length <= kOffBits ? Truncated(10, "OffBits", true)
                                                     : Truncated(length, "Pixels", true);
    ExpectRefused(First(whole, length), expected, std::to_string(length) + " bytes");
  }
  for (std::size_t length = needed; length <= whole.size(); ++length) {
    ASSERT_EQ(DecodeBmp(First(whole, length)).Pixels, IndexPixels(8)) << length;
  }
}

TEST(BmpReader, ASmallFileCannotAskForMuchMemory) {
  BmpParts coded{.Width = 30000, .Height = 30000, .Compression = 1, .Pixels = Hex("0001")};
  coded.Table = PaletteBytes(256);
  ExpectRefused(Build(coded), {ProblemKind::kTooLarge, 18, "Width", true}, "run-length coded");
  coded.Compression = 0;
  coded.Width = coded.Height = 10000;
  ExpectRefused(Build(coded), {ProblemKind::kTruncated, 54 + 1024 + 2, "Pixels", true}, "plain");
}

TEST(BmpWriter, EightBitFileIsTheSameByteForByte) {
  ColourTable palette{};
  palette[0] = Rgb(1, 2, 3);
  palette[255] = Rgb(0xFD, 0xFE, 0xFF);
  const Bytes indices = {11, 21, 31, 99, 99, 12, 22, 32};
  const Bytes file = EncodeBmp8(3, 2, indices, 5, palette, -2, 0x1234);
  const Bytes headers =
      Hex("424D 3E040000 FEFF 3412 36040000 28000000 03000000 02000000 0100 0800 00000000 08000000"
          "00000000 00000000 00000000 00000000");
  ASSERT_EQ(file.size(), 1086U);
  EXPECT_EQ(First(file, 54), headers);
  EXPECT_EQ(Bytes(file.begin() + 54, file.begin() + 59), Hex("03020100 00"));
  EXPECT_EQ(Bytes(file.begin() + 1073, file.end()), Hex("00 FFFEFD00 0C162000 0B151F00"));

  const BmpPicture back = DecodeBmp(file);
  EXPECT_THAT(back.Faults, IsEmpty());
  EXPECT_EQ(back.FileHeader.ReservedLow, -2);
  EXPECT_EQ(back.FileHeader.ReservedHigh, 0x1234);
  EXPECT_EQ(back.Palette, palette);
  EXPECT_EQ(back.Pixels, (Bytes{11, 21, 31, 12, 22, 32}));
}

TEST(BmpWriter, TrueColourFileIsTheSameByteForByte) {
  const Bytes pixels = {1, 2, 3, 4, 5, 6, 99, 7, 8, 9, 10, 11, 12};
  const Bytes file = EncodeBmp24(2, 2, pixels, 7);
  const Bytes expected =
      Hex("424D 46000000 0000 0000 36000000 28000000 02000000 02000000 0100 1800 00000000 10000000"
          "00000000 00000000 00000000 00000000 090807 0C0B0A 0000 030201 060504 0000");
  EXPECT_EQ(file, expected);
  EXPECT_EQ(DecodeBmp(file).Pixels, (Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
}

}  // namespace
}  // namespace tessa::testing
