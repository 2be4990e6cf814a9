#include "formats/sit.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "formats/ansi_text.h"
#include "formats/fixed32.h"
#include "formats/foreign_content.h"
#include "formats/number_text.h"

namespace tessa {
namespace {

constexpr std::uint64_t kRangeLowAt = 26;
constexpr std::uint64_t kRangeHighAt = 30;
constexpr std::uint64_t kOffsetAt = 48;
constexpr std::uint64_t kGainAt = 52;
constexpr std::uint64_t kScaleCenterAt = 68;
constexpr std::uint64_t kScaleStepAt = 72;
constexpr std::uint64_t kEmissivityAt = 76;
constexpr std::uint64_t kDateAt = 92;
constexpr std::uint64_t kTimeAt = 98;
constexpr std::uint64_t kSoundNameAt = 108;
constexpr std::uint64_t kSoundExtAt = 116;
constexpr std::uint64_t kCommentAt = 214;
constexpr std::uint64_t kCommentSize = 638;
constexpr std::uint64_t kMemoAt = 982;
constexpr std::uint64_t kMemoSize = 20;

double Fixed32At(ByteReader& reader, std::uint64_t offset) {
  reader.Seek(offset);
  const std::int16_t whole = reader.I16Be();
  return DecodeFixed32(whole, reader.U16Be());
}

std::string TextAt(ByteReader& reader, std::uint64_t offset, std::uint64_t size) {
  reader.Seek(offset);
  return reader.Text(size);
}

bool AllDigits(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char character) { return character >= '0' && character <= '9'; });
}

/// Values that no camera writes. They are read as they stand all the same.
void CheckValues(const SitHeader& header, Problems& faults) {
  const auto report = [&](std::uint64_t offset, std::string field, std::string text) {
    faults.push_back({ProblemKind::kBadValue, offset, std::move(field), std::move(text), false});
  };
  if (header.Gain == 0.0) {
    report(kGainAt, "Gain", "the gain is zero, so every pixel has the same temperature");
  }
  if (header.RangeLow >= header.RangeHigh) {
    report(kRangeLowAt, "RangeLow", "the calibrated range is empty or upside down");
  }
  if (header.EmissivityX100 <= 0 || header.EmissivityX100 > 100) {
    report(kEmissivityAt, "EmissivityX100", "the emissivity is not between 0.01 and 1.00");
  }
  if (header.ScaleStep <= 0.0) {
    report(kScaleStepAt, "ScaleStep", "the stored display scale is empty or upside down");
  }
  if (!AllDigits(header.DateText)) {
    report(kDateAt, "DateText", "the date is not made of six digits");
  }
  if (!AllDigits(header.TimeText)) {
    report(kTimeAt, "TimeText", "the time is not made of six digits");
  }
}

void WriteFixed32(ByteWriter& writer, double value) {
  const Fixed32Parts parts = EncodeFixed32(value);
  writer.I16Be(parts.Whole);
  writer.U16Be(parts.Fraction);
}

}  // namespace

int AttachmentCode(const SitHeader& header) {
  const int code = header.SoundExt.size() == 3 ? static_cast<unsigned char>(header.SoundExt[2]) : 0;
  return code >= 1 && code <= 3 ? code : 0;
}

float SitVersionOf(const SitHeader& header) {
  if (AttachmentCode(header) != 0) {
    return 4.0F;
  }
  std::string kept;
  for (const char character : std::string_view(header.Signature).substr(4)) {
    if ((character >= '0' && character <= '9') || character == '.') {
      kept.push_back(character);
    }
  }
  return static_cast<float>(ParseLeadingNumber(kept));
}

SitHeader ReadSitHeader(ByteSpan start, Problems& faults) {
  SitHeader header;
  const std::size_t present = std::min(start.size(), kSitHeaderSize);
  std::copy_n(start.begin(), present, header.Record.begin());

  ByteReader reader(header.Record);
  header.Signature = reader.Text(10);
  header.RangeLow = Fixed32At(reader, kRangeLowAt);
  header.RangeHigh = Fixed32At(reader, kRangeHighAt);
  header.Offset = Fixed32At(reader, kOffsetAt);
  header.Gain = Fixed32At(reader, kGainAt);
  header.ScaleCenter = Fixed32At(reader, kScaleCenterAt);
  header.ScaleStep = Fixed32At(reader, kScaleStepAt);
  reader.Seek(kEmissivityAt);
  header.EmissivityX100 = reader.I16Be();
  header.DateText = TextAt(reader, kDateAt, 6);
  header.TimeText = TextAt(reader, kTimeAt, 6);
  header.SoundName = TextAt(reader, kSoundNameAt, 8);
  header.SoundExt = TextAt(reader, kSoundExtAt, 3);
  header.Comment = TextAt(reader, kCommentAt, kCommentSize);
  header.Memo = TextAt(reader, kMemoAt, kMemoSize);

  if (auto foreign = ForeignContentProblem(start, "a SIT image")) {
    faults.push_back(std::move(*foreign));
  } else if (present < kSitHeaderSize) {
    faults.push_back(
        {ProblemKind::kTruncated, present, "SitHeader",
         "the file ends inside its header, after " + std::to_string(present) + " of 1024 bytes",
         true});
  } else {
    CheckValues(header, faults);
  }
  return header;
}

SitImage DecodeSit(ByteSpan start, std::uint64_t fileSize) {
  SitImage image;
  image.Header = ReadSitHeader(start, image.Faults);
  image.HeaderBytes = std::min(start.size(), kSitHeaderSize);

  // The raster has one size only, so its memory is bounded whatever the file says.
  image.Raster.Width = kSitWidth;
  image.Raster.Height = kSitHeight;
  image.Raster.Counts.resize(std::size_t{kSitWidth} * kSitHeight);
  const ByteSpan behindHeader = start.subspan(image.HeaderBytes);
  const ByteSpan raster = behindHeader.first(std::min(behindHeader.size(), kSitRasterSize));
  DecodeCountsBigEndian(raster, image.Raster.Counts);
  image.Raster.Present = raster.size() / 2;
  if (raster.size() < kSitRasterSize && FindNoImage(image.Faults) == nullptr) {
    image.Faults.push_back(
        {ProblemKind::kTruncated, fileSize, "Raster",
         "the file ends inside its picture: " + std::to_string(image.Raster.Present / kSitWidth) +
             " of 240 rows are whole",
         image.Raster.Present == 0});
  }

  if (AttachmentCode(image.Header) != 0 && fileSize <= kSitAttachmentOffset) {
    image.Faults.push_back({ProblemKind::kTruncated, fileSize, "SoundExt",
                            "the header promises a sound or a visible picture that is not there",
                            false});
  }
  if (AttachmentCode(image.Header) == 3 && start.size() >= kSitDecodeSize) {
    ByteReader reader(start, kSitAttachmentOffset);
    image.VisibleLength = reader.U32Be();
  }
  return image;
}

Bytes EncodeSit(const SitFields& fields) {
  ByteWriter writer;
  writer.Reserve(kSitAttachmentOffset + fields.Attachment.size());
  writer.Text(fields.Signature, 10);
  writer.PadTo(kRangeLowAt);
  WriteFixed32(writer, fields.RangeLow);
  WriteFixed32(writer, fields.RangeHigh);
  writer.PadTo(kOffsetAt);
  WriteFixed32(writer, fields.Offset);
  WriteFixed32(writer, fields.Gain);
  writer.PadTo(kScaleCenterAt);
  WriteFixed32(writer, fields.ScaleCenter);
  WriteFixed32(writer, fields.ScaleStep);
  writer.I16Be(fields.EmissivityX100);
  writer.PadTo(kDateAt);
  writer.Text(fields.DateText, 6);
  writer.Text(fields.TimeText, 6);
  writer.PadTo(kSoundNameAt);
  writer.Text(fields.SoundName, 8);
  writer.Text(fields.SoundExt, 3);
  writer.PadTo(kCommentAt);
  writer.Text(fields.Comment, kCommentSize);
  writer.PadTo(kMemoAt);
  writer.Text(fields.Memo, kMemoSize);
  writer.PadTo(kSitHeaderSize);
  for (const std::int16_t count : fields.Counts) {
    writer.I16Be(count);
  }
  writer.PadTo(kSitAttachmentOffset);
  writer.Append(fields.Attachment);
  return writer.Take();
}

}  // namespace tessa
