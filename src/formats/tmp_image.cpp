#include "formats/tmp_image.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "formats/foreign_content.h"

namespace tessa {
namespace {

constexpr std::size_t kStoredColumns = 256;
constexpr std::size_t kMemoSize = 20;

constexpr std::size_t kTmpCommentAt = 214;
constexpr std::size_t kTmpCommentSize = 768;
constexpr std::size_t kTmpMemoAt = 982;

constexpr std::size_t kOffsetTextAt = 12;
constexpr std::size_t kGainCodeAt = 18;
constexpr std::size_t kEmissivityTextAt = 19;
constexpr std::size_t kStampAt = 33;
constexpr std::size_t kStampDigits = 12;
constexpr std::size_t kLegacyCommentAt = 128;
constexpr std::size_t kLegacyCommentSize = 832;
constexpr std::size_t kLegacyMemoAt = 960;

std::optional<Problem> ForeignProblem(ByteSpan start) {
  return ForeignContentProblem(start, "a TMP image");
}

/// The 8-bit header is all text and can have a comment of several lines, so that it passes for a
/// text file; the twelve digits of its stamp tell.
bool HasLegacyStamp(ByteSpan start) {
  const std::string stamp = TextAt(start, kStampAt, kStampDigits);
  return stamp.size() == kStampDigits && stamp.find_first_not_of("0123456789") == std::string::npos;
}

/// Copies what is there of a header into `record` and reports a foreign or a cut file.
template <std::size_t Size>
void TakeRecord(ByteSpan start, std::optional<Problem> foreign,
                std::array<std::uint8_t, Size>& record, std::string_view field, Problems& faults) {
  const std::size_t present = std::min(start.size(), Size);
  std::copy_n(start.begin(), present, record.begin());
  if (foreign) {
    faults.push_back(std::move(*foreign));
  } else if (present < Size) {
    faults.push_back({ProblemKind::kTruncated, present, std::string(field),
                      "the file ends inside its header, after " + std::to_string(present) + " of " +
                          std::to_string(Size) + " bytes",
                      true});
  }
}

/// Fills a raster of 255 columns from stored rows of 256 values, as far as the bytes go.
/// `decode` takes the bytes of one stored row and the row's counts.
template <typename DecodeRow>
void FillRaster(ByteSpan start, std::uint64_t fileSize, int height, std::size_t bytesPerValue,
                DecodeRow&& decode, RawRaster& raster, Problems& faults) {
  raster.Width = kTmpWidth;
  raster.Height = height;
  const auto rows = static_cast<std::size_t>(height);
  raster.Counts.resize(rows * kTmpWidth);
  const ByteSpan stored = start.subspan(std::min(start.size(), kTmpRasterOffset));
  const std::size_t rowBytes = kStoredColumns * bytesPerValue;
  for (std::size_t row = 0; row < rows && row * rowBytes < stored.size(); ++row) {
    const ByteSpan bytes =
        stored.subspan(row * rowBytes, std::min(rowBytes, stored.size() - row * rowBytes));
    const std::size_t values = std::min<std::size_t>(bytes.size() / bytesPerValue, kTmpWidth);
    decode(bytes, std::span(raster.Counts).subspan(row * kTmpWidth, values));
    raster.Present = row * kTmpWidth + values;
  }
  if (stored.size() < rows * rowBytes && FindNoImage(faults) == nullptr) {
    // Told first: rows that nobody measured outweigh doubts about the header.
    faults.insert(faults.begin(),
                  {ProblemKind::kTruncated, fileSize, "Raster",
                   "the file ends inside its picture: " + std::to_string(stored.size() / rowBytes) +
                       " of " + std::to_string(rows) + " rows are whole",
                   raster.Present == 0});
  }
}

}  // namespace

TmpHeader ReadTmpHeader(ByteSpan start, Problems& faults) {
  TmpHeader header;
  TakeRecord(start, ForeignProblem(start), header.Record, "TmpHeader", faults);
  ReadCameraHeader(header.Record, header);
  header.Comment = TextAt(header.Record, kTmpCommentAt, kTmpCommentSize);
  header.Memo = TextAt(header.Record, kTmpMemoAt, kMemoSize);
  if (FindNoImage(faults) == nullptr) {
    CheckCameraHeader(header, faults);
  }
  return header;
}

TmpImage DecodeTmp(ByteSpan start, std::uint64_t fileSize) {
  TmpImage image;
  image.Header = ReadTmpHeader(start, image.Faults);
  FillRaster(start, fileSize, kTmpHeight, 2, DecodeCountsBigEndian, image.Raster, image.Faults);
  return image;
}

Bytes EncodeTmp(const TmpFields& fields) {
  ByteWriter writer;
  WriteCameraFields(fields, writer);
  writer.PadTo(kTmpCommentAt);
  writer.Text(fields.Comment, kTmpCommentSize);
  writer.Text(fields.Memo, kMemoSize);
  writer.PadTo(kTmpRasterOffset);
  for (std::size_t i = 0; i < fields.Counts.size(); ++i) {
    writer.I16Be(fields.Counts[i]);
    if (i % kTmpWidth == kTmpWidth - 1) {
      writer.I16Be(fields.Counts[i]);  // The column that readers drop.
    }
  }
  writer.PadTo(kTmpLegacyLimit);
  return writer.Take();
}

double LegacyGain(char gainCode) {
  constexpr std::array<double, 17> kGains = {0.1, 0.2, 0.3, 0.5, 0.7, 1,  2,   3,  5,
                                             7,   10,  20,  30,  50,  70, 100, 200};
  constexpr char kFirstCode = '1';
  const int index = gainCode - kFirstCode;
  return index >= 0 && index < static_cast<int>(kGains.size())
             ? kGains[static_cast<std::size_t>(index)]
             : 1.0;
}

LegacyHeader ReadLegacyHeader(ByteSpan start, Problems& faults) {
  LegacyHeader header;
  TakeRecord(start, HasLegacyStamp(start) ? std::nullopt : ForeignProblem(start), header.Record,
             "LegacyHeader", faults);
  header.OffsetText = TextAt(header.Record, kOffsetTextAt, 6);
  header.GainCode = static_cast<char>(header.Record[kGainCodeAt]);
  header.EmissivityText = TextAt(header.Record, kEmissivityTextAt, 4);
  header.StampText = TextAt(header.Record, kStampAt, kStampDigits);
  header.Comment = TextAt(header.Record, kLegacyCommentAt, kLegacyCommentSize);
  header.Memo = TextAt(header.Record, kLegacyMemoAt, kMemoSize);
  if (FindNoImage(faults) == nullptr && !HasLegacyStamp(start)) {
    faults.push_back(
        {ProblemKind::kBadValue, kStampAt, "StampText",
         "the date and time are not made of twelve digits; a 16-bit image that was cut "
         "looks like this",
         false});
  }
  return header;
}

LegacyImage DecodeLegacyTmp(ByteSpan start, std::uint64_t fileSize) {
  constexpr int kZeroLevel = 128;
  LegacyImage image;
  image.Header = ReadLegacyHeader(start, image.Faults);
  const auto decode = [](ByteSpan bytes, std::span<std::int16_t> counts) {
    for (std::size_t i = 0; i < counts.size(); ++i) {
      counts[i] = static_cast<std::int16_t>(bytes[i] - kZeroLevel);
    }
  };
  FillRaster(start, fileSize, kLegacyHeight, 1, decode, image.Raster, image.Faults);
  return image;
}

Bytes EncodeLegacyTmp(const LegacyFields& fields) {
  ByteWriter writer;
  writer.PadTo(kOffsetTextAt);
  writer.Text(fields.OffsetText, 6);
  writer.U8(static_cast<std::uint8_t>(fields.GainCode));
  writer.Text(fields.EmissivityText, 4);
  writer.PadTo(kStampAt);
  writer.Text(fields.StampText, kStampDigits);
  writer.PadTo(kLegacyCommentAt);
  writer.Text(fields.Comment, kLegacyCommentSize);
  writer.Text(fields.Memo, kMemoSize);
  writer.PadTo(kTmpRasterOffset);
  for (std::size_t i = 0; i < fields.Values.size(); ++i) {
    writer.U8(fields.Values[i]);
    if (i % kTmpWidth == kTmpWidth - 1) {
      writer.U8(fields.Values[i]);  // The column that readers drop.
    }
  }
  return writer.Take();
}

}  // namespace tessa
